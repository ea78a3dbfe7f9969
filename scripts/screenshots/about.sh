#!/usr/bin/env bash
# Screenshots of the About window and the update sheet into docs/screenshots: the window, the
# sheet offering a version with its notes, and the sheet while and after it downloads the
# installer. They come from the window's own tests, with the feed and installer on 127.0.0.1.
set -euo pipefail
cd "$(dirname "$0")/../.."

bash scripts/setup.sh
build=${TELVANE_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build "$build" -j 2 --target test_about_window
mkdir -p docs/screenshots
TELVANE_SCREENSHOT_DIR="$PWD/docs/screenshots" tests/run-webengine.sh tests/run-isolated.sh \
    "$build/tests/gui/test_about_window" oneWindowCentredAndKeptWhenClosed \
    anOfferOpensTheSheetAndDownloadsIntoIt
if command -v pngquant > /dev/null; then
    for png in docs/screenshots/about-window.png docs/screenshots/update-sheet*.png; do
        pngquant --force --skip-if-larger --output "$png" -- "$png" || true
    done
fi
ls -l docs/screenshots/about-window.png docs/screenshots/update-sheet*.png
