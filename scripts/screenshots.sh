#!/usr/bin/env bash
# Regenerates every screenshot under docs/screenshots: runs each scripts/screenshots/*.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
for script in scripts/screenshots/*.sh; do
    echo "== $script"
    bash "$script"
done
