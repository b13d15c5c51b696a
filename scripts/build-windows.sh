#!/usr/bin/env bash
# Builds the Windows effect module build/windows-release/Morvane.aex with
# Debian's MinGW-w64 cross compiler (installed first if missing), together with
# the Windows render-case driver and the native programs the checks compare
# against. Run scripts/check-windows-module.sh afterwards to inspect it.
# Usage: scripts/build-windows.sh
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
  cmake ninja-build g++ python3
  g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  echo "Installing: ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

cmake --preset windows-release
cmake --build --preset windows-release
echo "Built build/windows-release/Morvane.aex"
