#!/usr/bin/env bash
# Installs every Debian package needed to build, test and run Telvane.
# Idempotent: packages already present are skipped, and the package index is
# refreshed only when something is missing. Works as root or through sudo.
set -euo pipefail

packages=(
  # toolchain
  cmake ninja-build g++ pkg-config ccache clang-14 libclang-rt-14-dev clang-format git
  # libraries
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins qt6-svg-dev libqt6opengl6-dev libgl-dev
  qt6-webengine-dev
  libssl-dev libturbojpeg0-dev libjpeg62-turbo-dev libavahi-client-dev libpam0g-dev
  libxcb1-dev libxcb-shm0-dev libxcb-xtest0-dev libxcb-damage0-dev libxcb-randr0-dev
  libxcb-xfixes0-dev
  libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
  # running the console, the agent and the tests
  xvfb xauth x11-utils fonts-dejavu-core openssl avahi-daemon avahi-utils dbus iproute2
  util-linux procps psmisc x11vnc xdotool python3
  # a compositing manager under Xvfb: the launch overlay test and its screenshots
  xcompmgr
  # making the screenshots of docs/screenshots small
  pngquant
  # man pages, the launcher's icons, and checking the launcher and its metainfo
  scdoc librsvg2-bin desktop-file-utils appstream
  # lrelease, for the translations
  qt6-l10n-tools
  # the installer download benchmark measures against it
  curl
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all packages present"
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  as_root=(sudo)
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
if ! "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; then
  "${as_root[@]}" apt-get update
  "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
fi
