#!/usr/bin/env bash
# The remote-control window in each of its states (connecting, streaming at 1000x700 and
# 800x600, a failed start, a dropped session), against a simulated agent on a private Xvfb
# display: docs/screenshots/remote-control-*.png. The end-to-end test takes them.
set -euo pipefail
cd "$(dirname "$0")/../.."

bash scripts/setup.sh > /dev/null
build=${TELVANE_BUILD_DIR:-build}
if [ ! -f "$build/build.ninja" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$build" -j "$(nproc)" --target test_remote_control_agent telvane-agent

mkdir -p docs/screenshots
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! TELVANE_SCREENSHOT_DIR="$PWD/docs/screenshots" \
    tests/run-isolated.sh "$build/tests/integration/test_remote_control_agent" > "$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
ls docs/screenshots/remote-control-*.png
