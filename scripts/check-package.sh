#!/usr/bin/env bash
# Makes the Debian package from a build folder, installs it on this machine (as root), and checks
# that what a user runs finds what the package installed: `morvane` on the PATH loads the module
# from /usr/lib/morvane and renders what the build folder's own program renders, and ffmpeg finds
# the frei0r filter in /usr/lib/frei0r-1 without FREI0R_PATH. The package is removed afterwards.
# Usage: scripts/check-package.sh [BUILD_DIR]   (default build/release; configured and built)
set -euo pipefail
cd "$(dirname "$0")/.."
build="$(realpath "${1:-build/release}")"
if dpkg-query -W -f='${Status}' morvane 2>/dev/null | grep -q "install ok installed"; then
  echo "check-package: a morvane package is installed already; remove it first" >&2
  exit 1
fi
(cd "$build" && rm -f morvane_*.deb && cpack -G DEB >/dev/null)
work="$(mktemp -d)"
trap 'apt-get remove -y -qq morvane >/dev/null 2>&1 || true; rm -rf "$work"' EXIT
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$build"/morvane_*_amd64.deb >/dev/null

unset FREI0R_PATH MORVANE_MODULE
[ "$(command -v morvane)" = /usr/bin/morvane ] || { echo "FAILED: morvane is not on the PATH" >&2; exit 1; }
morvane info | grep -q '^  module       /usr/lib/morvane/Morvane.so$' ||
  { echo "FAILED: the installed morvane does not load /usr/lib/morvane/Morvane.so" >&2; exit 1; }
look=(--direction down --morvane 24 --stretch-curve exp-up --edge-mode mirror)
morvane render assets/sample.png "$work/installed.png" "${look[@]}" >/dev/null
"$build/cli/morvane" render assets/sample.png "$work/built.png" "${look[@]}" >/dev/null
cmp "$work/installed.png" "$work/built.png"

clip=(-f lavfi -i testsrc2=size=96x64:rate=5:duration=1 -frames:v 3)
filter="format=rgba,frei0r=filter_name=morvane:filter_params=down|rgba|1|0.1"
ff() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }
ff "${clip[@]}" -vf "$filter" -f rawvideo "$work/installed.rgba"
FREI0R_PATH="$build/frei0r-1" ff "${clip[@]}" -vf "$filter" -f rawvideo "$work/built.rgba"
ff "${clip[@]}" -vf format=rgba -f rawvideo "$work/plain.rgba"
cmp "$work/installed.rgba" "$work/built.rgba"
! cmp -s "$work/installed.rgba" "$work/plain.rgba" || { echo "FAILED: the filter changed nothing" >&2; exit 1; }
echo "package: installed, morvane and the frei0r filter work from where it put them"
