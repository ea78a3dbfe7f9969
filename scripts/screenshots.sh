#!/usr/bin/env bash
# Makes every screenshot of docs/screenshots/: runs each script of scripts/screenshots/.
set -euo pipefail
cd "$(dirname "$0")/.."
status=0
for script in scripts/screenshots/*.sh; do
    echo "== $script"
    bash "$script" || status=1
done
exit $status
