#!/usr/bin/env bash
# Installs what is needed, builds Telvane and starts the console.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
build=${TELVANE_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" -j "$(nproc)" --target telvane

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "run: no graphical session found (DISPLAY and WAYLAND_DISPLAY are unset)." >&2
    echo "run: start it from a desktop session, or under Xvfb: xvfb-run -a bash scripts/run.sh" >&2
    exit 1
fi
exec "$build/src/app/telvane" "$@"
