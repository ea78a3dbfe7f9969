#!/usr/bin/env bash
# Builds the two .deb packages (telvane, telvane-agent), checks them with lintian, installs
# them into a fresh Debian 12 root made with debootstrap and runs them there: telvanectl,
# the agent (simulated, on 127.0.0.1) and the console under Xvfb with a screenshot.
#
#   scripts/package-debian.sh [WORK_DIR]
#
# Needs root (debootstrap, chroot), debootstrap and the Debian archive; without them it
# says so and stops after building the packages. Not part of CI: it downloads a system.
set -euo pipefail
cd "$(dirname "$0")/.."
source=$PWD
# Inside the source tree by default, so ccache finds the main build's objects.
work=${1:-$source/build-package}
export CCACHE_BASEDIR=$source CCACHE_NOHASHDIR=1
build=$work
root=$work/debian-root
mirror=${TELVANE_DEBIAN_MIRROR:-http://deb.debian.org/debian}
mkdir -p "$work"

step() { printf '\n== %s\n' "$*"; }

# Beyond scripts/setup.sh: dpkg-shlibdeps (dpkg-dev) for the dependencies, lintian and
# debootstrap for the checks below.
if ! command -v dpkg-shlibdeps > /dev/null; then
    echo "dpkg-shlibdeps is missing: apt-get install dpkg-dev lintian debootstrap" >&2
    exit 1
fi

step "building the packages in $build"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTELVANE_WERROR=ON \
    -DCMAKE_INSTALL_PREFIX=/usr
cmake --build "$build" -j "${TELVANE_JOBS:-2}" --target telvane telvanectl telvane-agent \
    man_pages desktop_files debian_changelog screen_grab
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB)
debs=("$build"/telvane_*.deb "$build"/telvane-agent_*.deb)

for deb in "${debs[@]}"; do
    step "dpkg -I $(basename "$deb")"
    dpkg-deb -I "$deb"
    step "dpkg -c $(basename "$deb")"
    dpkg-deb -c "$deb"
done

step "lintian"
if command -v lintian > /dev/null; then
    # Errors fail the run; the warnings that stay are explained in docs/packaging.md.
    lintian --fail-on error --tag-display-limit 0 "${debs[@]}"
else
    echo "lintian is not installed; skipped"
fi

if ! command -v debootstrap > /dev/null; then
    echo "debootstrap is not installed (apt-get install debootstrap); stopping after the packages."
    exit 0
fi
if [ "$(id -u)" -ne 0 ]; then
    echo "debootstrap and chroot need root; stopping after the packages."
    exit 0
fi
if ! debootstrap_probe=$(curl -fsS -o /dev/null "$mirror/dists/bookworm/Release" 2>&1); then
    echo "the Debian archive at $mirror cannot be reached; stopping after the packages."
    echo "$debootstrap_probe"
    exit 0
fi

mounted=()
cleanup() {
    for ((i = ${#mounted[@]} - 1; i >= 0; i--)); do
        umount -l "${mounted[i]}" 2> /dev/null || true
    done
}
trap cleanup EXIT

step "making a fresh Debian 12 root in $root (debootstrap --variant=minbase)"
rm -rf "$root"
debootstrap --variant=minbase bookworm "$root" "$mirror" > "$work/debootstrap.log" 2>&1 || {
    tail -20 "$work/debootstrap.log"
    exit 1
}
tail -1 "$work/debootstrap.log"
for fs in proc dev dev/pts; do
    case $fs in
        proc) mount -t proc proc "$root/proc" ;;
        dev) mount --bind /dev "$root/dev" ;;
        dev/pts) mount --bind /dev/pts "$root/dev/pts" ;;
    esac
    mounted+=("$root/$fs")
done
cp /etc/resolv.conf "$root/etc/resolv.conf"
in_root() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 "$@"; }

step "apt-get install ./telvane*.deb"
mkdir -p "$root/tmp/debs"
cp "${debs[@]}" "$root/tmp/debs/"
in_root apt-get update -q
in_root sh -c 'cd /tmp/debs && DEBIAN_FRONTEND=noninteractive apt-get install -y -q ./telvane*.deb' |
    tail -5

step "telvanectl --help"
in_root telvanectl --help
step "telvanectl phrases"
in_root telvanectl phrases

step "telvane-agent --simulate on 127.0.0.1 for a moment"
in_root sh -c 'telvane-agent --simulate --bind 127.0.0.1 --port 5905 & agent=$!
    sleep 3; kill $agent; wait $agent; echo "agent exit status $?"'
step "telvane-agent --fingerprint"
in_root telvane-agent --fingerprint

step "the console without a display"
in_root sh -c 'telvane; echo "exit status $?"' 2>&1 || true

step "the console under Xvfb for a moment, with a screenshot"
in_root sh -c 'DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends xvfb xauth' |
    tail -1
cp "$build/tests/gui/screen_grab" "$root/tmp/screen_grab"
in_root sh -c 'Xvfb :77 -screen 0 1000x700x24 -nolisten tcp & xvfb=$!
    sleep 2
    DISPLAY=:77 telvane & console=$!
    sleep 6
    DISPLAY=:77 /tmp/screen_grab /tmp/console.png && echo "screenshot taken"
    kill $console; wait $console; echo "console exit status $?"
    kill $xvfb'
cp "$root/tmp/console.png" "$work/console-in-fresh-root.png"
echo "screenshot: $work/console-in-fresh-root.png"

step "done: both packages installed and ran in a fresh Debian 12 root"
