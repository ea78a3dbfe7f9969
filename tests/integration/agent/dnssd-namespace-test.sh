#!/usr/bin/env bash
# Announces a simulated agent over DNS-SD and browses for it, inside a private network
# and mount namespace with its own D-Bus and Avahi daemon (never in the machine's own
# network). Exit 77 = skipped.
set -u
agent=$1

if [ "${2:-}" != "--inside" ]; then
    for tool in unshare ip dbus-daemon avahi-daemon avahi-browse; do
        if ! command -v "$tool" >/dev/null; then
            echo "SKIP: $tool is not installed; the DNS-SD test needs it"
            exit 77
        fi
    done
    if ! unshare --net --mount --fork true 2>/dev/null; then
        echo "SKIP: network namespaces are not permitted here; the DNS-SD test needs them"
        exit 77
    fi
    exec unshare --net --mount --fork bash "$0" "$agent" --inside
fi

set -e
work=$(mktemp -d)
cleanup() {
    [ -n "${agent_pid:-}" ] && kill "$agent_pid" 2>/dev/null || true
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

echo "secret" | "$agent" --set-password --credentials-file "$work/credentials" --user tester
"$agent" --simulate --bind 198.18.0.1 --port 5905 --config-dir "$work/config" \
    --credentials-file "$work/credentials" --uploads-dir "$work/uploads" 2>"$work/agent.log" &
agent_pid=$!

# Without a daemon the agent says so once and serves anyway.
for _ in $(seq 100); do grep -q "listening on" "$work/agent.log" && break; sleep 0.1; done
grep -q "no Avahi daemon running" "$work/agent.log" || { echo "FAIL: no notice without a daemon"; cat "$work/agent.log"; exit 1; }

cat >"$work/avahi.conf" <<CONF
[server]
allow-interfaces=v0
use-ipv6=no
[publish]
publish-workstation=no
CONF
avahi-daemon --no-drop-root --no-chroot -f "$work/avahi.conf" -D

# The agent announces itself once the daemon appears.
found=""
for _ in $(seq 40); do
    found=$(avahi-browse --resolve --terminate --parsable _zekt._tcp 2>/dev/null | grep '^=' || true)
    [ -n "$found" ] && break
    sleep 0.5
done
echo "$found"
[ -n "$found" ] || { echo "FAIL: _zekt._tcp not found"; cat "$work/agent.log"; exit 1; }
echo "$found" | grep -q ';5905;' || { echo "FAIL: wrong port"; exit 1; }
for key in name hostname "version=0.1.0"; do
    echo "$found" | grep -q "\"$key" || { echo "FAIL: TXT $key missing"; exit 1; }
done
[ "$(grep -c 'no Avahi daemon running' "$work/agent.log")" = 1 ] || { echo "FAIL: notice repeated"; exit 1; }
echo "PASS"
