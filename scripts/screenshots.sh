#!/usr/bin/env bash
# Takes every view's screenshots again: runs each scripts/screenshots/*.sh in turn.
set -euo pipefail
cd "$(dirname "$0")/.."
status=0
for script in scripts/screenshots/*.sh; do
    echo "== $script"
    bash "$script" || status=1
done
exit $status
