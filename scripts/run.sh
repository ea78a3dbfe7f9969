#!/usr/bin/env bash
# Installs what is needed, builds Telvane and starts the console together with a local
# simulated agent on 127.0.0.1, which the console offers when its list is empty.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
build=${TELVANE_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" -j "$(nproc)" --target telvane telvane-agent telvanectl

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "run: no graphical session found (DISPLAY and WAYLAND_DISPLAY are unset)." >&2
    echo "run: start it from a desktop session, or under Xvfb: xvfb-run -a bash scripts/run.sh" >&2
    exit 1
fi

# The assistant panel's web engine cannot start its sandbox as root; there (and only there) it
# runs without it and without the GPU.
if [ "$(id -u)" -eq 0 ]; then
    export QTWEBENGINE_DISABLE_SANDBOX=1
    export QTWEBENGINE_CHROMIUM_FLAGS="${QTWEBENGINE_CHROMIUM_FLAGS:+$QTWEBENGINE_CHROMIUM_FLAGS }--disable-gpu"
fi

# The local agent keeps its identity and a generated password between runs.
port=${TELVANE_LOCAL_AGENT_PORT:-5905}
state="${XDG_DATA_HOME:-$HOME/.local/share}/Quorvel/local-agent"
# Everything the local agent keeps is the user's alone, whatever the umask.
umask 077
mkdir -p "$state/uploads"
chmod 700 "$state" "$state/uploads"
if [ ! -s "$state/password" ]; then
    head -c 18 /dev/urandom | base64 | tr -d '/+=' > "$state/password"
    "$build/agent/telvane-agent" --set-password --config-dir "$state" \
        --credentials-file "$state/credentials" --user "$(id -un)" < "$state/password"
fi
"$build/agent/telvane-agent" --simulate --bind 127.0.0.1 --port "$port" --auth file \
    --config-dir "$state" --credentials-file "$state/credentials" \
    --uploads-dir "$state/uploads" 2> "$state/agent.log" &
agent=$!
trap 'kill "$agent" 2>/dev/null || true' EXIT

# The agent makes its identity before it listens: ask for the fingerprint only then, so
# it is the one the console will be shown.
fingerprint=("$build/agent/telvane-agent" --fingerprint --config-dir "$state")
for _ in $(seq 100); do
    grep -q "listening on" "$state/agent.log" 2>/dev/null && break
    kill -0 "$agent" 2>/dev/null || break
    sleep 0.1
done
if grep -q "listening on" "$state/agent.log" 2>/dev/null; then
    echo "run: local agent on 127.0.0.1:$port (log: $state/agent.log, fingerprint: $("${fingerprint[@]}"))"
else
    echo "run: the local agent is not listening yet; see $state/agent.log" >&2
    echo "run: its fingerprint, once it runs: $(printf '%q ' "${fingerprint[@]}")" >&2
fi

record=$(printf '{"name":"Local simulated agent","host":"127.0.0.1","port":%d,"username":"%s","password":"%s","tags":["local"]}' \
    "$port" "$(id -un)" "$(cat "$state/password")")
"$build/src/app/telvane" --add-computer-if-empty "$record" "$@"
