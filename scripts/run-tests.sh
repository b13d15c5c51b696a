#!/usr/bin/env bash
# Configures, builds and runs the whole test suite with the given preset
# (default: the developer preset). Usage: scripts/run-tests.sh [preset]
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-default}"
jobs="$(nproc 2>/dev/null || echo 2)"
cmake --preset "$preset"
cmake --build --preset "$preset" -j "$jobs"
ctest --preset "$preset" -j "$jobs"
