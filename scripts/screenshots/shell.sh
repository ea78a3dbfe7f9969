#!/usr/bin/env bash
# Screenshots of the Help menu open over the console's window and of three frames of the
# launch ripple (start, middle, end) into docs/screenshots/. Draws on a private X server with
# a private HOME; xcompmgr runs there, as the ripple is translucent only with a compositing
# manager.
set -euo pipefail
cd "$(dirname "$0")/../.."

build=${TELVANE_BUILD_DIR:-build}
if [ ! -f "$build/build.ninja" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$build" -j 2 --target shell_screenshots
out=docs/screenshots
mkdir -p "$out"
rm -f "$out"/help-menu.png "$out"/launch-animation-*.png
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
    xcompmgr &
    compositor=$!
    trap "kill $compositor" EXIT
    sleep 0.5
    tests/run-isolated.sh "$1" "$2"' _ "$build/tools/shell_screenshots" "$out"
# A palette of 256 colours keeps the files small; the views lose nothing visible.
pngquant --force --ext .png --speed 1 --quality 80-100 "$out"/help-menu.png \
    "$out"/launch-animation-*.png
ls -l "$out"/help-menu.png "$out"/launch-animation-*.png
