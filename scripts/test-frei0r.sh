#!/usr/bin/env bash
# Tests the frei0r modules (morvane.so, morvane_mix.so) in the real hosts: renders a generated clip
# through ffmpeg and melt and compares every frame byte for byte with `morvane render` (the effect
# on the simulated host) given the same control values. Run by CTest as frei0r_hosts.
#
# Usage: scripts/test-frei0r.sh BUILD_DIR   (with the modules and the morvane tool built in it;
#   MORVANE_CLI overrides the tool). Needs ffmpeg and melt (scripts/install-deps.sh).
set -euo pipefail
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
# Cases: name; the frei0r parameter values in parameter order as ffmpeg takes them; the same
# values as `morvane render` options (the controls' own units, degrees for angles).
cases=(
  "defaults;;"
  "right;right|rgba|0.8|0.05|0.2|sine-wave|0.25|0.1|0.1|linear-ramp-up|0.6|0.1|n|sine-wave|0.1|0.3|rgb|0.5|mirror|0;--channels rgba --morvane-intensity 80 --morvane 3.2 --pixel-size 3.208 --stretch-curve sine-wave --curve-phase 90 --curve-smoothness 1.6 --stretch-start-offset 10 --distribution-mode linear-ramp-up --distribution-range 1.2 --image-shift-phase 36 --image-shift-phase-sync off --shading sine-wave --shading-interval-size 27 --shading-interval-phase 108 --shading-channels rgb --shading-opacity 50 --edge-mode mirror"
  "left;left|luma-no-alpha|1|0.04|0.06|triangle-wave|-0.125|0|0.05|linear-ramp-down|0.4|0.3|y|line|0.05|0|alpha|0.8|transparent|0.3;--direction left --channels luma-no-alpha --morvane 2.56 --pixel-size 0.9694 --stretch-curve triangle-wave --curve-phase -45 --stretch-start-offset 5 --distribution-mode linear-ramp-down --distribution-range 0.8 --image-shift-phase 108 --shading line --shading-interval-size 15 --shading-opacity 80 --edge-mode transparent --transparency-feather 30"
  "down;down|rgb-no-alpha|0.7|0.03|0.03|exp-up|0.5|0.05|0|constant|0.5|0.2|y|triangle-wave|0.02|0.5|rgb|0.6|repeat-last|0;--direction down --channels rgb-no-alpha --morvane-intensity 70 --morvane 1.92 --pixel-size 0.4897 --stretch-curve exp-up --curve-phase 180 --curve-smoothness 0.8 --distribution-range 1 --image-shift-phase 72 --shading triangle-wave --shading-interval-size 7 --shading-interval-phase 180 --shading-channels rgb --shading-opacity 60 --edge-mode repeat-last"
  "up;up|luma|1|0.06|0.12|exp-down|0.1|0.2|0.2|constant|1|0.7|n|linear-ramp-down|0.03|0.2|alpha|1|wrap|0;--direction up --morvane 3.84 --pixel-size 1.9288 --stretch-curve exp-down --curve-phase 36 --curve-smoothness 3.2 --stretch-start-offset 20 --image-shift-phase 252 --image-shift-phase-sync off --shading linear-ramp-down --shading-interval-size 10 --shading-interval-phase 72 --shading-opacity 100"
  "down-red-clamped;down|red|1.5|-0.5|2|linear-ramp-down|3.25|-1|0.1|linear-ramp-up|7|-0.3|y|sine-wave|-2|0|rgb|2|mirror|0;--direction down --channels red --morvane 0 --pixel-size 16 --stretch-curve linear-ramp-down --curve-phase 1170 --stretch-start-offset 10 --distribution-mode linear-ramp-up --image-shift-phase -108 --shading sine-wave --shading-interval-size 2 --shading-channels rgb --shading-opacity 100 --edge-mode mirror"
  "up-alpha-transparent;up|alpha|1|0.05|0.0625|sine-wave|0|0|0|constant|1|0|y|none|0|0|alpha|0|transparent|0.5;--direction up --channels alpha --morvane 3.2 --pixel-size 1.009375 --stretch-curve sine-wave --shading-interval-size 2 --edge-mode transparent --transparency-feather 50"
)
for entry in "${cases[@]}"; do
  IFS=';' read -r name params options <<<"$entry"
  read -ra options <<<"$options"
  expect expected.rgba "${options[@]}"
  cmp -s expected.rgba src.rgba && { failed=$((failed + 1)); echo "FAILED  $name changes nothing"; }
  ff -i src.nut -vf "frei0r=filter_name=morvane${params:+:filter_params=$params}" \
    -frames:v $frames -f rawvideo -pix_fmt rgba ffmpeg.rgba || : >ffmpeg.rgba
  check "ffmpeg $name" expected.rgba ffmpeg.rgba
  # melt takes the same values by parameter index, the bool as 1 or 0.
  IFS='|' read -ra values <<<"$(sed 's/|y|/|1|/; s/|n|/|0|/' <<<"$params")"
  mapfile -t properties < <(for i in "${!values[@]}"; do echo "$i=${values[i]}"; done)
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
