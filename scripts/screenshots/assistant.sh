#!/usr/bin/env bash
# Screenshots of the assistant panel into docs/screenshots: the chat page after the clean-up,
# a page that cannot be reached, and the notice shown where the web engine cannot run. They
# come from the panel's own tests, on a local stand-in for the chat page.
set -euo pipefail
cd "$(dirname "$0")/../.."

bash scripts/setup.sh
build=${TELVANE_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build "$build" -j 2 --target test_assistant_panel
mkdir -p docs/screenshots
TELVANE_SCREENSHOT_DIR="$PWD/docs/screenshots" tests/run-webengine.sh tests/run-isolated.sh \
    "$build/tests/gui/test_assistant_panel" removesBrandingAndVoiceInput \
    aPageThatFailsToLoadShowsWhatTheViewShows withoutTheWebEngineThePanelShowsANotice
ls -l docs/screenshots/assistant-*.png
