#!/usr/bin/env bash
# Runs a command on the xcb platform under a private Xvfb, as Qt WebEngine needs a real X
# server. Xvfb picks a free display number itself (-displayfd), so parallel runs never collide.
# As root the engine's sandbox cannot start, so there it runs without it and without the GPU;
# never for a normal user.
set -eu
dir=$(mktemp -d "${TMPDIR:-/tmp}/telvane-xvfb.XXXXXX")
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$dir/display" 2>"$dir/xvfb.log" &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; wait "$xvfb" 2>/dev/null || true; rm -rf "$dir"' EXIT
for _ in $(seq 200); do
    [ -s "$dir/display" ] && break
    if ! kill -0 "$xvfb" 2>/dev/null; then
        cat "$dir/xvfb.log" >&2
        exit 1
    fi
    sleep 0.05
done
if [ ! -s "$dir/display" ]; then
    echo "run-webengine: Xvfb did not start" >&2
    exit 1
fi
export DISPLAY=":$(head -n 1 "$dir/display")"
export QT_QPA_PLATFORM=xcb
if [ "$(id -u)" -eq 0 ]; then
    export QTWEBENGINE_DISABLE_SANDBOX=1
    export QTWEBENGINE_CHROMIUM_FLAGS="${QTWEBENGINE_CHROMIUM_FLAGS:+$QTWEBENGINE_CHROMIUM_FLAGS }--disable-gpu"
fi
"$@"
