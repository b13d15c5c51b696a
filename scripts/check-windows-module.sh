#!/usr/bin/env bash
# Checks the Windows module built by scripts/build-windows.sh: inspects
# build/windows-release/Morvane.aex (PE32+ x86-64 DLL, exactly the two entry
# points, system DLLs only, the PIPL resource holding the generator's bytes)
# and renders the comparison cases with it under Wine, byte for byte against
# the Linux module. Installs Wine (Debian's wine64) first if it is missing.
# Usage: scripts/check-windows-module.sh
set -euo pipefail
cd "$(dirname "$0")/.."

if [ ! -f build/windows-release/Morvane.aex ]; then
  echo "build/windows-release/Morvane.aex is missing: run scripts/build-windows.sh first" >&2
  exit 1
fi

packages=(wine64 python3)
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
  # The build looks for Wine when it is configured.
  cmake --preset windows-release >/dev/null
fi

log=build/windows-release/check-windows-module.log
report=build/windows-release/tests/windows/render-cases/report.txt
rm -f "$report"
set +e
ctest --preset windows-release 2>&1 | tee "$log"
status=${PIPESTATUS[0]}
set -e
if [ -f "$report" ]; then
  echo "--- Linux and Windows (Wine) render comparison ($report) ---"
  cat "$report"
  # CTest's summary once more, so that the log ends with it.
  echo "---"
  grep -E "tests passed|tests failed|Total Test time" "$log" || true
fi
exit "$status"
