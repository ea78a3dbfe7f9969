#!/usr/bin/env bash
# Runs a command inside a private network and mount namespace with its own system D-Bus and
# Avahi daemon, so DNS-SD tests never multicast on the machine's own network.
#
#   dnssd-namespace.sh [--no-daemon] COMMAND [ARGS...]
#
# Inside, the network is a veth pair (v0 198.18.0.1/24, v1) and lo; the daemon serves v0
# only, IPv4 only. The command sees:
#   TELVANE_AVAHI_START  a script that starts the daemon and returns once it answers
#                        (stop it with `avahi-daemon -k`)
#   TELVANE_DNSSD_HOST   the host name the daemon announces (".local"), resolvable here
# Exits with the command's status, or 77 (skipped) where namespaces are not permitted or a
# tool is missing.
set -u
here=$(cd "$(dirname "$0")" && pwd)

if [ "${TELVANE_DNSSD_INSIDE:-}" != 1 ]; then
    for tool in unshare ip mount dbus-daemon avahi-daemon avahi-browse; do
        if ! command -v "$tool" >/dev/null; then
            echo "SKIP: $tool is not installed; DNS-SD tests need it"
            exit 77
        fi
    done
    if ! unshare --net --mount --fork true 2>/dev/null; then
        echo "SKIP: network namespaces are not permitted here; DNS-SD tests need them"
        exit 77
    fi
    TELVANE_DNSSD_INSIDE=1 exec unshare --net --mount --fork bash "$here/dnssd-namespace.sh" "$@"
fi

start_daemon=1
if [ "${1:-}" = --no-daemon ]; then
    start_daemon=0
    shift
fi

set -e
work=$(mktemp -d)
cleanup() {
    avahi-daemon -k 2>/dev/null || true
    [ -n "${dbus_pid:-}" ] && kill "$dbus_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

mount -t tmpfs tmpfs /run
mkdir -p /run/dbus /run/avahi-daemon
ip link set lo up
ip link add v0 type veth peer name v1
ip addr add 198.18.0.1/24 dev v0
ip link set v0 up
ip link set v1 up
dbus_pid=$(dbus-daemon --system --fork --print-pid)

cat >"$work/avahi.conf" <<CONF
[server]
allow-interfaces=v0
use-ipv6=no
[publish]
publish-workstation=no
CONF
cat >"$work/avahi-start" <<START
#!/usr/bin/env bash
avahi-daemon --no-drop-root --no-chroot -f "$work/avahi.conf" -D || exit 1
for _ in \$(seq 100); do
    avahi-browse --all --terminate >/dev/null 2>&1 && exit 0
    sleep 0.1
done
echo "avahi-start: the daemon does not answer" >&2
exit 1
START
chmod +x "$work/avahi-start"
export TELVANE_AVAHI_START="$work/avahi-start"
export TELVANE_DNSSD_HOST="$(hostname).local"

# The daemon's host name resolves through a private /etc/hosts when the system has no mDNS
# resolver (libnss-mdns); the machine's own file is not touched.
if ! getent hosts "$TELVANE_DNSSD_HOST" >/dev/null; then
    { cat /etc/hosts; echo "198.18.0.1 $TELVANE_DNSSD_HOST"; } >"$work/hosts"
    mount --bind "$work/hosts" /etc/hosts
fi

if [ "$start_daemon" = 1 ]; then
    "$TELVANE_AVAHI_START"
fi
set +e
"$@"
