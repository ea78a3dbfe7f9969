#!/usr/bin/env bash
# Regenerates every screenshot the docs show: runs each scripts/screenshots/*.sh.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
for script in "$here"/screenshots/*.sh; do
    echo "== $(basename "$script")"
    bash "$script"
done
