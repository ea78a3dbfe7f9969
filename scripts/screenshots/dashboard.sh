#!/usr/bin/env bash
# Screenshots of the main window on the dashboard, the computer detail in each of its states,
# the log and the delete confirmation, at 1000x700 and 800x600, and of the settings window,
# into docs/screenshots/. Builds what it needs; draws on a private X
# server with a private HOME, so nothing of the user's is read or written.
set -euo pipefail
cd "$(dirname "$0")/../.."

build=${TELVANE_BUILD_DIR:-build}
if [ ! -f "$build/build.ninja" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$build" --target dashboard_screenshots
out=docs/screenshots
mkdir -p "$out"
shots=("$out"/dashboard-*.png "$out"/detail-*.png "$out"/logs-*.png "$out"/delete-confirmation-*.png
    "$out"/settings.png)
rm -f "${shots[@]}"
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24" \
    tests/run-isolated.sh "$build/tools/dashboard_screenshots" "$out"
# A palette of 256 colours keeps the files small; the views lose nothing visible.
pngquant --force --ext .png --speed 1 --quality 80-100 "$out"/dashboard-*.png "$out"/detail-*.png \
    "$out"/logs-*.png "$out"/delete-confirmation-*.png "$out"/settings.png
