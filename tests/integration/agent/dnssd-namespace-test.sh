#!/usr/bin/env bash
# Announces a simulated agent over DNS-SD and browses for it, inside the private network of
# dnssd-namespace.sh (never the machine's own). Exit 77 = skipped.
set -u
agent=$1

if [ "${2:-}" != "--inside" ]; then
    exec bash "$(dirname "$0")/../dnssd-namespace.sh" --no-daemon bash "$0" "$agent" --inside
fi

set -e
work=$(mktemp -d)
cleanup() {
    [ -n "${agent_pid:-}" ] && kill "$agent_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

echo "secret" | "$agent" --set-password --credentials-file "$work/credentials" --user tester
"$agent" --simulate --bind 198.18.0.1 --port 5905 --config-dir "$work/config" \
    --credentials-file "$work/credentials" --uploads-dir "$work/uploads" 2>"$work/agent.log" &
agent_pid=$!

# Without a daemon the agent says so once and serves anyway.
for _ in $(seq 100); do grep -q "listening on" "$work/agent.log" && break; sleep 0.1; done
grep -q "no Avahi daemon running" "$work/agent.log" || { echo "FAIL: no notice without a daemon"; cat "$work/agent.log"; exit 1; }

"$TELVANE_AVAHI_START"

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
