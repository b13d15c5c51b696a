#!/usr/bin/env bash
# Tests the frei0r modules (morvane.so, morvane_mix.so) in the real hosts: renders a generated clip
# through ffmpeg and melt and compares every frame byte for byte with `morvane render` (the effect
# on the simulated host) given the same control values. Run by CTest as frei0r_hosts.
#
# Usage: scripts/test-frei0r.sh BUILD_DIR   (with the modules and the morvane tool built in it;
#   MORVANE_CLI overrides the tool). Needs ffmpeg and melt (scripts/install-deps.sh).
set -euo pipefail
parameters="$(cd "$(dirname "$0")/.." && pwd)/tests/frei0r/parameters.txt"
. "$(dirname "$0")/test-lib.sh"

# A 160 x 96 clip with transparent, half-transparent and opaque areas, and a different clip for the
# "Intensity Source"; as NUT for the hosts, and their first 3 frames as raw RGBA and PNG files.
frames=3 last=2
ff -f lavfi -i "testsrc2=size=160x96:rate=5:duration=2,format=rgba,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='if(lt(X,40),if(lt(Y,30),0,128),255)'" \
  -c:v rawvideo src.nut
ff -f lavfi -i "testsrc=size=160x96:rate=5:duration=2,hflip,format=rgba" -c:v rawvideo layer.nut
for clip in src layer; do
  ff -i $clip.nut -frames:v $frames -f rawvideo -pix_fmt rgba $clip.rgba
  ff -i $clip.nut -frames:v $frames -start_number 0 $clip-%d.png
done

expect() { # expect OUT.rgba OPTIONS...: the frames `morvane render` makes
  rm -f cli-*.png
  "$cli" render src-%d.png cli-%d.png --frames 0-$last "${@:2}" >cli.log 2>&1 || cat cli.log >&2
  ff -start_number 0 -i cli-%d.png -f rawvideo -pix_fmt rgba "$1" || : >"$1"
}
# Cases: name; frei0r parameter values by name as melt takes them ("Name=value|...", the bool as 1
# or 0, absent = default); the same values as `morvane render` options (the controls' own units,
# degrees for angles).
cases=(
  "defaults;;"
  "right;Channels=rgba|Morvane Intensity=0.8|Morvane=0.05|Pixel Size=0.2|Stretch Curve=sine-wave|Curve Phase=0.25|Curve Smoothness=0.1|Stretch Start Offset=0.1|Distribution Mode=linear-ramp-up|Distribution Range=0.6|Image Shift Phase=0.1|Image Shift Phase Sync=0|Shading=sine-wave|Shading Interval Size=0.1|Shading Interval Phase=0.3|Shading Channel(s)=rgb|Shading Opacity=0.5|Edge Mode=mirror;--channels rgba --morvane-intensity 80 --morvane 3.2 --pixel-size 3.208 --stretch-curve sine-wave --curve-phase 90 --curve-smoothness 1.6 --stretch-start-offset 10 --distribution-mode linear-ramp-up --distribution-range 1.2 --image-shift-phase 36 --image-shift-phase-sync off --shading sine-wave --shading-interval-size 27 --shading-interval-phase 108 --shading-channels rgb --shading-opacity 50 --edge-mode mirror"
  "left;Direction=left|Channels=luma-no-alpha|Morvane=0.04|Pixel Size=0.06|Stretch Curve=triangle-wave|Curve Phase=-0.125|Stretch Start Offset=0.05|Distribution Mode=linear-ramp-down|Distribution Range=0.4|Image Shift Phase=0.3|Shading=line|Shading Interval Size=0.05|Shading Opacity=0.8|Edge Mode=transparent|Transparency Feather=0.3;--direction left --channels luma-no-alpha --morvane 2.56 --pixel-size 0.9694 --stretch-curve triangle-wave --curve-phase -45 --stretch-start-offset 5 --distribution-mode linear-ramp-down --distribution-range 0.8 --image-shift-phase 108 --shading line --shading-interval-size 15 --shading-opacity 80 --edge-mode transparent --transparency-feather 30"
  "down;Direction=down|Channels=rgb-no-alpha|Morvane Intensity=0.7|Morvane=0.03|Pixel Size=0.03|Stretch Curve=exp-up|Curve Phase=0.5|Curve Smoothness=0.05|Distribution Range=0.5|Image Shift Phase=0.2|Shading=triangle-wave|Shading Interval Size=0.02|Shading Interval Phase=0.5|Shading Channel(s)=rgb|Shading Opacity=0.6|Edge Mode=repeat-last;--direction down --channels rgb-no-alpha --morvane-intensity 70 --morvane 1.92 --pixel-size 0.4897 --stretch-curve exp-up --curve-phase 180 --curve-smoothness 0.8 --distribution-range 1 --image-shift-phase 72 --shading triangle-wave --shading-interval-size 7 --shading-interval-phase 180 --shading-channels rgb --shading-opacity 60 --edge-mode repeat-last"
  "up;Direction=up|Morvane=0.06|Pixel Size=0.12|Stretch Curve=exp-down|Curve Phase=0.1|Curve Smoothness=0.2|Stretch Start Offset=0.2|Image Shift Phase=0.7|Image Shift Phase Sync=0|Shading=linear-ramp-down|Shading Interval Size=0.03|Shading Interval Phase=0.2|Shading Opacity=1;--direction up --morvane 3.84 --pixel-size 1.9288 --stretch-curve exp-down --curve-phase 36 --curve-smoothness 3.2 --stretch-start-offset 20 --image-shift-phase 252 --image-shift-phase-sync off --shading linear-ramp-down --shading-interval-size 10 --shading-interval-phase 72 --shading-opacity 100"
  "down-red-clamped;Direction=down|Channels=red|Morvane Intensity=1.5|Morvane=-0.5|Pixel Size=2|Stretch Curve=linear-ramp-down|Curve Phase=3.25|Curve Smoothness=-1|Stretch Start Offset=0.1|Distribution Mode=linear-ramp-up|Distribution Range=7|Image Shift Phase=-0.3|Shading=sine-wave|Shading Interval Size=-2|Shading Channel(s)=rgb|Shading Opacity=2|Edge Mode=mirror;--direction down --channels red --morvane 0 --pixel-size 16 --stretch-curve linear-ramp-down --curve-phase 1170 --stretch-start-offset 10 --distribution-mode linear-ramp-up --image-shift-phase -108 --shading sine-wave --shading-interval-size 2 --shading-channels rgb --shading-opacity 100 --edge-mode mirror"
  "up-alpha-transparent;Direction=up|Channels=alpha|Morvane=0.05|Pixel Size=0.0625|Stretch Curve=sine-wave|Shading Interval Size=0|Edge Mode=transparent|Transparency Feather=0.5;--direction up --channels alpha --morvane 3.2 --pixel-size 1.009375 --stretch-curve sine-wave --shading-interval-size 2 --edge-mode transparent --transparency-feather 50"
)
for entry in "${cases[@]}"; do
  IFS=';' read -r name settings options <<<"$entry"
  read -ra options <<<"$options"
  # ffmpeg takes every parameter's value in the module's order (the bool as y or n), melt the ones
  # set by index: the parameters, their order and defaults as the module test accepted them.
  values=() properties=()
  while read -r index type value parameter; do
    [[ "|$settings|" =~ \|"$parameter"=([^|]*)\| ]] && value=${BASH_REMATCH[1]} && properties+=("$index=$value")
    [ "$type" = bool ] && value=$([ "$value" = 0 ] && echo n || echo y); values+=("$value")
  done < <(grep -v '^ ' "$parameters")
  expect expected.rgba "${options[@]}"
  cmp -s expected.rgba src.rgba && { failed=$((failed + 1)); echo "FAILED  $name changes nothing"; }
  ff -i src.nut -vf "frei0r=filter_name=morvane:filter_params=$(IFS='|' && echo "${values[*]}")" \
    -frames:v $frames -f rawvideo -pix_fmt rgba ffmpeg.rgba || : >ffmpeg.rgba
  check "ffmpeg $name" expected.rgba ffmpeg.rgba
  melt_render melt.rgba src.nut out=$last -filter frei0r.morvane "${properties[@]}"
  check "melt $name" expected.rgba melt.rgba
done

# MLT cuts a frame into horizontal slices only when the filter has a "threads" property; the
# rows of Right and Left are independent, so their slices give the whole-frame picture too.
for direction in right left; do
  expect expected.rgba --direction $direction --channels rgba --morvane 5.12
  melt_render melt.rgba src.nut out=$last -filter frei0r.morvane threads=2 \
    "Direction=$direction" Channels=rgba Morvane=0.08
  check "melt $direction in slices, parameters by name" expected.rgba melt.rgba
done

# The mixer: the second input is the "Intensity Source".
expect expected.rgba --direction down --morvane 6.4 --intensity-source layer-%d.png
expect self.rgba --direction down --morvane 6.4
cmp -s expected.rgba self.rgba && { failed=$((failed + 1)); echo "FAILED  the layer changes nothing"; }
melt_render melt.rgba src.nut out=$last -track layer.nut out=$last \
  -transition frei0r.morvane_mix in=0 out=$last a_track=0 b_track=1 Direction=down Morvane=0.1
check "melt mixer, second input as intensity" expected.rgba melt.rgba

echo "frei0r hosts: $failed failed"
[ "$failed" = 0 ]
