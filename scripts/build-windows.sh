#!/usr/bin/env bash
# Builds the Windows effect module build/windows-release/Morvane.aex with
# Debian's MinGW-w64 cross compiler (installed first if missing), together with
# the Windows render-case driver and the native programs the checks compare
# against, and packs the module with its INSTALL.txt into
# build/windows-release/Morvane-<version>-win64.zip. Run scripts/check-windows-module.sh afterwards
# to inspect the module.
# Usage: scripts/build-windows.sh
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh --windows

cmake --preset windows-release
cmake --build --preset windows-release
(cd build/windows-release && rm -f Morvane-*-win64.zip && cpack -G ZIP >/dev/null)
echo "Built build/windows-release/Morvane.aex and $(ls build/windows-release/Morvane-*-win64.zip)"
