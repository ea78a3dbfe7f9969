#!/usr/bin/env bash
# Installs what is needed, builds everything with warnings as errors and runs the whole
# test suite (unit, integration and GUI tests).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
build=${TELVANE_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTELVANE_WERROR=ON
cmake --build "$build" -j "$(nproc)"
cd "$build"
ctest --output-on-failure -L unit -j "$(nproc)"
ctest --output-on-failure -LE unit
