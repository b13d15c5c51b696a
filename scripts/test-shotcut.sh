#!/usr/bin/env bash
# Tests the Shotcut filter folder in Shotcut itself, on a private X display: Shotcut, run from a
# copy that sees the build's folder among its own filters, lists the filter (`added filter
# "Morvane"`), opens a project holding it on a clip with a few controls set as Shotcut's panel
# sets them, and shows its panel with every control and no QML error; that project renders with
# melt exactly as `morvane render` does. Run by CTest as shotcut_editor.
#
# Usage: scripts/test-shotcut.sh BUILD_DIR [SCREENSHOT.png]   (needs shotcut, xvfb, xdotool:
#   scripts/install-deps.sh --editors; exits 77, a skip, where Shotcut is not installed)
set -euo pipefail
shotcut=$(command -v shotcut) || { echo "SKIPPED: shotcut is not installed" >&2; exit 77; }
if [ -z "${MORVANE_X_SESSION:-}" ]; then
  exec env MORVANE_X_SESSION=1 xvfb-run -a -s "-screen 0 1600x1000x24" dbus-run-session -- "$0" "$@"
fi
screenshot="${2:+$(realpath -m "$2")}"  # before test-lib.sh moves to its scratch folder
. "$(dirname "$0")/test-lib.sh"
export HOME="$work/home"
# Shotcut reads its filters from <binary>/../share/shotcut/qml/filters only.
share="$(dirname "$shotcut")/../share/shotcut"
mkdir -p app/bin app/share "$HOME" && cp "$shotcut" app/bin/
cp -rs "$(realpath "$share")" app/share/shotcut  # a tree of links to Shotcut's own files
cp -r "$build/editors/shotcut/morvane" app/share/shotcut/qml/filters/

ff -f lavfi -i "testsrc2=size=640x360" -frames:v 1 clip.png
settings=(Direction=down Morvane=0.125 "Pixel Size=0.124453" "Curve Phase=0.027778" Shading=sine-wave
  "Shading Interval Size=0.055118" "Shading Channel(s)=rgb" "Shading Opacity=0.6")
cat >project.mlt <<XML
<?xml version="1.0" encoding="utf-8"?>
<mlt LC_NUMERIC="C">
  <profile width="640" height="360" progressive="1" sample_aspect_num="1" sample_aspect_den="1"
    display_aspect_num="16" display_aspect_den="9" frame_rate_num="25" frame_rate_den="1" colorspace="709"/>
  <producer id="clip" in="0" out="49">
    <property name="resource">$work/clip.png</property>
    <filter id="morvane">
      <property name="mlt_service">frei0r.morvane</property>
      <property name="shotcut:filter">morvane</property>
$(for setting in "${settings[@]}"; do echo "      <property name=\"${setting%%=*}\">${setting#*=}</property>"; done)
    </filter>
  </producer>
</mlt>
XML

app/bin/shotcut "$work/project.mlt" >shotcut.log 2>&1 &
pid=$!
waitlog() { until grep -q "$1" shotcut.log; do kill -0 $pid || { cat shotcut.log >&2; exit 1; }; sleep 0.1; done; }
waitlog 'added filter "Morvane"'
echo "ok      Shotcut lists the filter"
# The Filters tab, then the project's filter: its panel.
for _ in $(seq 100); do
  grep -q 'Morvane panel' shotcut.log && break
  xdotool mousemove 103 397 click 1 mousemove 77 165 click 1 sleep 0.5
done
[ -z "$screenshot" ] || import -window root "$screenshot"
kill -KILL $pid && wait $pid 2>/dev/null || :  # it does not always end on TERM
count=$(melt -query filter=frei0r.morvane | grep -c '^  - identifier:')
grep -q "Morvane panel: $count controls" shotcut.log && echo "ok      the panel shows all $count controls" ||
  { failed=$((failed + 1)); echo "FAILED  the panel does not show all $count controls"; }
! grep -i 'morvane/.*qml' shotcut.log && echo "ok      no QML error" ||
  { failed=$((failed + 1)); echo "FAILED  QML errors above"; }

still_render "the Shotcut project renders as morvane does" clip.png project.mlt --direction down \
  --morvane 8 --pixel-size 2 --curve-phase 10 --shading sine-wave --shading-interval-size 16 \
  --shading-channels rgb --shading-opacity 60
echo "Shotcut: $failed failed"
[ "$failed" = 0 ]
