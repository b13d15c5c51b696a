#!/usr/bin/env bash
# Checks the Windows module built by scripts/build-windows.sh: the inspection of
# build/windows-release/Morvane.aex and, under Wine, the golden corpus through the cross-built
# kernels and a hosted render compared with the Linux module's (ctest --preset windows-release).
# Installs Wine (Debian's wine64) first if it is missing.
# Usage: scripts/check-windows-module.sh
set -euo pipefail
cd "$(dirname "$0")/.."

[ -f build/windows-release/Morvane.aex ] ||
  { echo "build/windows-release/Morvane.aex is missing: run scripts/build-windows.sh first" >&2; exit 1; }
bash scripts/install-deps.sh --wine
# Configured again so that the build finds Wine, then the Wine tests' programs brought up to date.
cmake --preset windows-release >/dev/null
cmake --build --preset windows-release >/dev/null
ctest --preset windows-release
