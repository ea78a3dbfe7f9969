#!/usr/bin/env bash
# Shoots the add and edit dialogs under Xvfb into docs/screenshots/ (forms-*.png).
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${TELVANE_BUILD_DIR:-build}
cmake --build "$build" --target form_screenshots >/dev/null
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
QT_QPA_PLATFORM=xcb tests/run-isolated.sh xvfb-run -a -s "-screen 0 1280x800x24" \
    "$build/tests/gui/form_screenshots" "$out"
mkdir -p docs/screenshots
for shot in add-searching add-rows add-hand-entry add-nothing-found edit-valid edit-errors; do
    cp "$out/$shot.png" "docs/screenshots/forms-$shot.png"
done
echo "forms: docs/screenshots/forms-*.png"
