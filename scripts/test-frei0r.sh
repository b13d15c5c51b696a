#!/usr/bin/env bash
# Tests the frei0r modules (morvane.so, morvane_mix.so): builds them with their tests, runs the
# unit tests, then renders a generated clip through the real ffmpeg and melt and compares every
# frame byte for byte with DispatchStretch run directly on the same pixels (and, when the
# command-line renderer is built, with `morvane render` on the same frame).
#
# Usage: scripts/test-frei0r.sh [--hosts-only] [BUILD_DIR]
#   BUILD_DIR     build folder (default build/default, configured with the default preset)
#   --hosts-only  skip building and the unit tests (as run from CTest)
# Needs ffmpeg, melt and frei0r-plugins-dev (scripts/install-deps.sh installs them).
set -euo pipefail
cd "$(dirname "$0")/.."
root="$(pwd)"

hosts_only=0
if [ "${1:-}" = "--hosts-only" ]; then
  hosts_only=1
  shift
fi
build="$(realpath -m "${1:-build/default}")"

for tool in ffmpeg melt; do
  command -v "$tool" >/dev/null || { echo "test-frei0r: $tool is not installed" >&2; exit 1; }
done

if [ "$hosts_only" = 0 ]; then
  if [ ! -f "$build/CMakeCache.txt" ]; then
    if [ "$build" = "$root/build/default" ]; then
      cmake --preset default
    else
      cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANE_WERROR=ON
    fi
  fi
  cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" --target morvane_frei0r \
    morvane_frei0r_mix morvane_frei0r_reference morvane_frei0r_tests
  "$build/tests/frei0r/morvane_frei0r_tests" --gtest_brief=1
fi

reference="$build/tests/frei0r/morvane_frei0r_reference"
export FREI0R_PATH="$build/frei0r-1"
[ -x "$reference" ] && [ -f "$FREI0R_PATH/morvane.so" ] && [ -f "$FREI0R_PATH/morvane_mix.so" ] ||
  { echo "test-frei0r: modules or reference tool missing in $build" >&2; exit 1; }
cli="${MORVANE_CLI:-$build/cli/morvane}"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work"

# A 160 x 96 clip: moving test pattern with transparent, half-transparent and opaque areas; and a
# second, different clip for the "Intensity Source". Frame sizes are multiples of 8 as frei0r
# asks; rows are 640 bytes, so ffmpeg's frames carry no row padding.
width=160
height=96
frames=3
frame_bytes=$((width * height * 4))
ff() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }
ff -f lavfi -i "testsrc2=size=${width}x${height}:rate=5:duration=2,format=rgba,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='if(lt(X,40),if(lt(Y,30),0,128),255)'" \
  -c:v rawvideo -pix_fmt rgba src.nut
ff -f lavfi -i "testsrc=size=${width}x${height}:rate=5:duration=2,hflip,format=rgba" \
  -c:v rawvideo -pix_fmt rgba layer.nut
ff -i src.nut -frames:v $frames -f rawvideo -pix_fmt rgba src.rgba
ff -i layer.nut -frames:v $frames -f rawvideo -pix_fmt rgba layer.rgba
cat >profile <<EOF
description=frei0r test ${width}x${height}
frame_rate_num=5
frame_rate_den=1
width=$width
height=$height
progressive=1
sample_aspect_num=1
sample_aspect_den=1
display_aspect_num=$width
display_aspect_den=$height
colorspace=709
EOF

passed=0
failed=0
check() {  # check NAME EXPECTED ACTUAL: the first $frames frames must be equal
  local size
  size=$(stat -c %s "$3" 2>/dev/null || echo 0)
  if [ "$size" -ge $((frames * frame_bytes)) ] &&
    cmp -s -n $((frames * frame_bytes)) "$2" "$3"; then
    passed=$((passed + 1))
    echo "ok      $1"
  else
    failed=$((failed + 1))
    echo "FAILED  $1 ($(cmp -n $((frames * frame_bytes)) "$2" "$3" 2>&1 | head -1))"
  fi
}

# melt renders frames 0..2 of a clip through filters or a transition into raw RGBA.
melt_render() {  # melt_render OUT.rgba MELT-ARGS...
  local out="$1"
  shift
  rm -f melt.nut
  melt -silent -profile profile "$@" -consumer avformat:melt.nut vcodec=rawvideo pix_fmt=rgba \
    mlt_image_format=rgba an=1 real_time=0 </dev/null >melt.log 2>&1 || cat melt.log >&2
  ff -i melt.nut -frames:v $frames -f rawvideo -pix_fmt rgba "$out" 2>/dev/null || : >"$out"
}

# Cases: name and frei0r parameter values in parameter order, written as for ffmpeg.
#   0 Direction 1 Channels 2 Morvane Intensity 3 Morvane 4 Pixel Size 5 Stretch Curve
#   6 Curve Phase 7 Curve Smoothness 8 Stretch Start Offset 9 Distribution Mode
#   10 Distribution Range 11 Image Shift Phase 12 Image Shift Phase Sync 13 Shading
#   14 Shading Interval Size 15 Shading Interval Phase 16 Shading Channel(s) 17 Shading Opacity
#   18 Edge Mode 19 Transparency Feather
cases=(
  "defaults|"
  "right|right|rgba|0.8|0.05|0.1|sine-wave|0.25|0.1|0.1|linear-ramp-up|0.6|0.1|n|sine-wave|0.1|0.3|rgb|0.5|mirror|0"
  "left|left|luma-no-alpha|1|0.04|0.0625|triangle-wave|-0.125|0|0.05|linear-ramp-down|0.4|0.3|y|line|0.05|0|alpha|0.8|transparent|0.3"
  "down|down|rgb-no-alpha|0.7|0.03|0.05|exp-up|0.5|0.05|0|constant|0.5|0.2|y|triangle-wave|0.02|0.5|rgb|0.6|repeat-last|0"
  "up|up|luma|1|0.06|0.04|exp-down|0.1|0.2|0.2|constant|1|0.7|n|linear-ramp-down|0.03|0.2|alpha|1|wrap|0"
  "down-red-clamped|down|red|1.5|-0.5|2|linear-ramp-down|3.25|-1|0.1|linear-ramp-up|7|-0.3|y|sine-wave|-2|0|rgb|2|mirror|0"
  "up-alpha-transparent|up|alpha|1|0.05|0.02|sine-wave|0|0|0|constant|1|0|y|none|0|0|alpha|0|transparent|0.5"
)

for entry in "${cases[@]}"; do
  name="${entry%%|*}"
  params="${entry#*|}"
  "$reference" render $width $height "$params" src.rgba expected.rgba
  if cmp -s expected.rgba src.rgba; then
    failed=$((failed + 1))
    echo "FAILED  case $name leaves the clip unchanged and tests nothing"
  fi

  filter="frei0r=filter_name=morvane"
  [ -n "$params" ] && filter="$filter:filter_params=$params"
  ff -i src.nut -vf "$filter" -frames:v $frames -f rawvideo -pix_fmt rgba ffmpeg.rgba ||
    : >ffmpeg.rgba
  check "ffmpeg $name" expected.rgba ffmpeg.rgba

  mapfile -t properties < <("$reference" melt-properties "$params")
  melt_render melt.rgba src.nut out=$((frames - 1)) -filter frei0r.morvane "${properties[@]}"
  check "melt $name" expected.rgba melt.rgba

  if [ -x "$cli" ]; then
    mapfile -t options < <("$reference" cli-options "$params")
    head -c $frame_bytes src.rgba >frame.rgba
    ff -f rawvideo -pix_fmt rgba -s ${width}x${height} -i frame.rgba frame.png
    rm -f cli.png
    "$cli" render frame.png cli.png "${options[@]}" >cli.log 2>&1 || cat cli.log >&2
    ff -i cli.png -f rawvideo -pix_fmt rgba cli.rgba 2>/dev/null || : >cli.rgba
    frames=1 check "morvane render $name" ffmpeg.rgba cli.rgba
  fi
done

# MLT cuts a frame into horizontal slices only when the filter has a "threads" property; the
# rows of Right and Left are independent, so their slices give the whole-frame picture too.
# (Down and Up need whole columns: they are rendered whole as long as "threads" is not set.)
for direction in right left; do
  "$reference" render $width $height "$direction|rgba|1|0.08" src.rgba expected.rgba
  melt_render melt.rgba src.nut out=$((frames - 1)) -filter frei0r.morvane threads=2 \
    "Direction=$direction" "Channels=rgba" "Morvane=0.08"
  check "melt $direction in slices, parameters by name" expected.rgba melt.rgba
done

# The mixer: the second input is the "Intensity Source".
params="down|luma|1|0.1"
"$reference" render $width $height "$params" src.rgba expected.rgba layer.rgba
"$reference" render $width $height "$params" src.rgba self.rgba
mapfile -t properties < <("$reference" melt-properties "$params")
melt_render melt.rgba src.nut out=$((frames - 1)) -track layer.nut out=$((frames - 1)) \
  -transition frei0r.morvane_mix in=0 out=$((frames - 1)) a_track=0 b_track=1 "${properties[@]}"
check "melt mixer, second input as intensity" expected.rgba melt.rgba
if cmp -s expected.rgba self.rgba; then
  failed=$((failed + 1))
  echo "FAILED  the intensity clip does not change the mixer's result"
fi
if [ -x "$cli" ]; then
  head -c $frame_bytes layer.rgba >layer-frame.rgba
  ff -f rawvideo -pix_fmt rgba -s ${width}x${height} -i layer-frame.rgba layer.png
  mapfile -t options < <("$reference" cli-options "$params")
  rm -f cli.png
  "$cli" render frame.png cli.png "${options[@]}" --intensity-source layer.png >cli.log 2>&1 ||
    cat cli.log >&2
  ff -i cli.png -f rawvideo -pix_fmt rgba cli.rgba 2>/dev/null || : >cli.rgba
  frames=1 check "morvane render mixer" expected.rgba cli.rgba
else
  echo "note: $cli not built; the comparison with morvane render was skipped"
fi

echo "frei0r hosts: $passed passed, $failed failed"
[ "$failed" = 0 ]
