#!/usr/bin/env bash
# Regenerates every screenshot under docs/screenshots/: runs each script of
# scripts/screenshots/ (each also runs on its own).
set -euo pipefail
cd "$(dirname "$0")"
for script in screenshots/*.sh; do
    bash "$script"
done
