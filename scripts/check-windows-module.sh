#!/usr/bin/env bash
# Checks the Windows module built by scripts/build-windows.sh: the inspection of
# build/windows-release/Morvane.aex and, under Wine, the golden corpus through the cross-built
# kernels and a hosted render compared with the Linux module's (ctest --preset windows-release).
# Installs Wine (Debian's wine64) first if it is missing.
# Usage: scripts/check-windows-module.sh
set -euo pipefail
cd "$(dirname "$0")/.."

if [ ! -f build/windows-release/Morvane.aex ]; then
  echo "build/windows-release/Morvane.aex is missing: run scripts/build-windows.sh first" >&2
  exit 1
fi
missing=()
for p in wine64 python3; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  echo "Installing: ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
# Configured again so that the build finds Wine, then the Wine tests' programs brought up to date.
cmake --preset windows-release >/dev/null
cmake --build --preset windows-release >/dev/null
ctest --preset windows-release
