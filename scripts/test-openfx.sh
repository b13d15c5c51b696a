#!/usr/bin/env bash
# Tests the OpenFX plug-in (Morvane.ofx.bundle) in a real OpenFX host: melt with MLT's `openfx`
# module, built once per build folder by scripts/build-mlt-openfx.sh. The filter must list every
# control as accepted once (script name, label, hint, range, default, items); clips rendered
# through it at 8 and 16 bits must equal, byte for byte, `morvane render` of the frames melt
# hands the filter with the same controls. Those frames are
# melt's decoding of the clip, taken from a run without the filter: with the profile melt makes
# from the clip, MLT takes RGB frames through YUV, which changes some values by one. Run by CTest
# as openfx_host.
#
# Usage: scripts/test-openfx.sh BUILD_DIR   (with the bundle and the morvane tool built in it;
#   MORVANE_CLI overrides the tool)
set -euo pipefail
repo="$(cd "$(dirname "$0")/.." && pwd)"
# shellcheck source=/dev/null
source "$(bash "$repo/scripts/build-mlt-openfx.sh" "$(realpath "$1")/mlt-openfx")"  # melt first on the PATH
. "$repo/scripts/test-lib.sh"
export OFX_PLUGIN_PATH="$build/ofx-plugins"
filter=openfx.com.orbrenn.morvane
fail() { failed=$((failed + 1)) && echo "FAILED  $*"; }

# --- What the host lists.
melt -query filters 2>/dev/null | grep -x -- "  - $filter" >/dev/null || fail "melt does not list $filter"
melt -query "filter=$filter" >query.yaml 2>/dev/null
# Every control as the host shows it (script name, label, hint, range, default, items) is the
# list accepted once by comparing it with `morvane info`, kept in tests/ofx/melt-parameters.yaml.
sed -n '/^parameters:/,$p' query.yaml | diff "$repo/tests/ofx/melt-parameters.yaml" - >listing.diff ||
  fail "the parameters melt lists differ from the accepted list: $(cat listing.diff)"
# "SCRIPT-NAME KEBAB-ITEM|LABEL" for every popup item, as `morvane render` and the host name it.
awk '/^  - identifier:/ { id = $3 }
     /^      - / { sub(/^      - /, ""); s = tolower($0); gsub(/[()]/, "", s)
                   gsub(/[^a-z0-9]+/, "-", s); gsub(/^-|-$/, "", s); print id " " s "|" $0 }' \
  query.yaml >labels.txt

# --- Renders. Options as `morvane render` takes them become the filter's properties: script names
# in lowerCamelCase, popup items by their labels, on/off as 1/0.
properties() {
  while (($# > 1)); do
    camel=$(sed -E 's/-([a-z0-9])/\U\1/g' <<<"${1#--}")
    value=$2 && shift 2
    case "$value" in
      on | off) value=$([ "$value" = on ] && echo 1 || echo 0) ;;
      [a-z]*) value=$(grep -m1 "^$camel $value|" labels.txt | cut -d'|' -f2) ;;
    esac
    echo "$camel=$value"
  done
}
last=2

# A 160 x 96 clip with transparent, half-transparent and opaque areas, at 8 bits and, with
# levels no 8-bit image has (so a render at 8 bits would show), at 16 bits.
ff -f lavfi -i "testsrc2=size=160x96:rate=5:duration=1,format=rgba,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='if(lt(X,40),if(lt(Y,30),0,128),255)'" \
  -c:v rawvideo src8.nut
ff -i src8.nut -vf "format=gbrap16le,geq=r='r(X,Y)+X*3':g='g(X,Y)+Y*5':b='b(X,Y)':a='alpha(X,Y)+(X+Y)*7',format=rgba64le" \
  -c:v rawvideo src16.nut
declare -A format=([8]="rgba rgba rgba" [16]="rgba64 rgba64le rgba64be")  # MLT, raw, PNG

cases=(
  "8;defaults;"
  "8;right;--channels rgba --morvane-intensity 80 --morvane 3.2 --pixel-size 3.2 --stretch-curve sine-wave --curve-phase 90 --curve-smoothness 1.6 --stretch-start-offset 10 --distribution-mode linear-ramp-up --distribution-range 1.2 --image-shift-phase 36 --image-shift-phase-sync off --shading sine-wave --shading-interval-size 27 --shading-interval-phase 108 --shading-channels rgb --shading-opacity 50 --edge-mode mirror"
  "8;left;--direction left --channels luma-no-alpha --morvane 2.5 --pixel-size 0.97 --stretch-curve triangle-wave --curve-phase -45 --distribution-mode linear-ramp-down --distribution-range 0.8 --shading line --shading-interval-size 14 --shading-opacity 80 --edge-mode transparent --transparency-feather 30"
  "8;down;--direction down --channels rgb-no-alpha --morvane 8 --pixel-size 0.49 --stretch-curve exp-up --shading triangle-wave --shading-interval-size 7 --edge-mode repeat-last"
  "8;up;--direction up --channels red --morvane 3.8 --stretch-curve exp-down --curve-phase 36 --image-shift-phase 252 --shading linear-ramp-down --edge-mode wrap"
  "16;defaults;"
  "16;down;--direction down --channels rgba --morvane 6 --pixel-size 0.6 --stretch-curve sine-wave --shading sine-wave --shading-channels rgb --edge-mode mirror"
  "16;left;--direction left --morvane 12 --image-shift-phase 90 --edge-mode transparent --transparency-feather 40"
)
for bits in 8 16; do
  read -r image_format pix_fmt png_fmt <<<"${format[$bits]}"
  # The frames melt hands the filter, as PNG files for `morvane render`.
  melt_render in$bits.raw src$bits.nut out=$last
  ff -f rawvideo -pix_fmt "$pix_fmt" -s 160x96 -i in$bits.raw -start_number 0 -pix_fmt "$png_fmt" in$bits-%d.png
  # "Morvane Intensity" 0 gives every level back.
  melt_render melt.raw src$bits.nut out=$last -filter $filter morvaneIntensity=0 morvane=9
  check "$bits-bit, intensity 0 gives the frames back" in$bits.raw melt.raw
done

for entry in "${cases[@]}"; do
  IFS=';' read -r bits name options <<<"$entry"
  read -ra options <<<"$options"
  read -r image_format pix_fmt _ <<<"${format[$bits]}"
  depth=$([ "$bits" = 8 ] && echo 8 || echo 32f)
  rm -f cli-*.png
  "$cli" render in$bits-%d.png cli-%d.png --frames 0-$last --depth $depth --out-depth $bits \
    "${options[@]}" >cli.log 2>&1 || cat cli.log >&2
  ff -start_number 0 -i cli-%d.png -f rawvideo -pix_fmt "$pix_fmt" expected.raw || : >expected.raw
  cmp -s expected.raw in$bits.raw && fail "$bits-bit $name changes nothing"
  mapfile -t props < <(properties "${options[@]}")
  melt_render melt.raw src$bits.nut out=$last -filter $filter "${props[@]}"
  check "$bits-bit $name" expected.raw melt.raw
done

echo "OpenFX host: $failed failed"
[ "$failed" = 0 ]
