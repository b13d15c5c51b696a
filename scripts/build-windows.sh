#!/usr/bin/env bash
# Builds the Windows effect module build/windows-release/Morvane.aex with
# Debian's MinGW-w64 cross compiler (installed first if missing), together with
# the Windows render-case driver and the native programs the checks compare
# against. Run scripts/check-windows-module.sh afterwards to inspect it.
# Usage: scripts/build-windows.sh
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh --windows

cmake --preset windows-release
cmake --build --preset windows-release
echo "Built build/windows-release/Morvane.aex"
