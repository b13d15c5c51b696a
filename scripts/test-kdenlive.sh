#!/usr/bin/env bash
# Tests the Kdenlive description of the frei0r filter in Kdenlive itself, on a private X display
# and session bus, driven through Kdenlive's D-Bus interface: a still clip on the timeline with
# the effect, saved; the project must hold every frei0r parameter at the module's own default and
# render with melt exactly as `morvane render` does. Then a few controls are set as Kdenlive saves
# them (6 decimals), Kdenlive opens and saves the project again, and it renders as `morvane render`
# with those values. Run by CTest as kdenlive_editor.
#
# Usage: scripts/test-kdenlive.sh BUILD_DIR [SCREENSHOT.png]   (needs kdenlive, xvfb, xdotool:
#   scripts/install-deps.sh --editors; exits 77, a skip, where Kdenlive is not installed)
set -euo pipefail
command -v kdenlive >/dev/null || { echo "SKIPPED: kdenlive is not installed" >&2; exit 77; }
if [ -z "${MORVANE_X_SESSION:-}" ]; then
  exec env MORVANE_X_SESSION=1 xvfb-run -a -s "-screen 0 1600x1200x24" dbus-run-session -- "$0" "$@"
fi
screenshot="${2:+$(realpath -m "$2")}"  # before test-lib.sh moves to its scratch folder
. "$(dirname "$0")/test-lib.sh"
export HOME="$work/home" XDG_RUNTIME_DIR="$work/run" TMPDIR="$work/tmp"
mkdir -p "$HOME/.local/share/kdenlive" "$XDG_RUNTIME_DIR" "$TMPDIR" && chmod 700 "$XDG_RUNTIME_DIR"
cp -r "$build/editors/kdenlive/effects" "$build/editors/kdenlive/transitions" "$HOME/.local/share/kdenlive/"
ff -f lavfi -i "testsrc2=size=1920x1080" -frames:v 1 clip.png  # the project's default frame size

call() { gdbus call --session --dest "org.kde.kdenlive-$pid" --object-path /kdenlive/MainWindow_1 --method "org.kde.$@"; }
start() { # start [PROJECT]: Kdenlive, waited for until its main window answers on the bus
  kdenlive "$@" >>kdenlive.log 2>&1 &
  pid=$!
  until gdbus introspect --session --dest "org.kde.kdenlive-$pid" --object-path /kdenlive/MainWindow_1 >/dev/null 2>&1; do
    alive && sleep 0.1
  done
}
alive() { # the Kdenlive started last still runs; else its log, and the test ends failed
  kill -0 $pid 2>/dev/null && return; echo "FAILED  Kdenlive ended early" >&2; cat kdenlive.log >&2; exit 1; }
# Kdenlive 22.12 now and then crashes on its way out, at times before it has answered exitApp:
# each save is waited for before, so a missing answer only means it is ended by a signal.
stop() { call kdenlive.MainWindow.exitApp >/dev/null 2>&1 || kill $pid 2>/dev/null || :; wait $pid || :; }
# A new project, saved through the Save As dialog (the only step without a D-Bus call).
start
call KMainWindow.activateAction file_save_as >/dev/null &
xdotool search --sync --onlyvisible --name 'Save' >/dev/null
xdotool type "$work/project.kdenlive" && xdotool key Return
until [ -s project.kdenlive ]; do alive && sleep 0.1; done
# The clip is on the timeline once it has loaded: until then adding it does nothing.
call kdenlive.MainWindow.addProjectClip -- "$work/clip.png" -1 >/dev/null
until grep -q 'frei0r.morvane' project.kdenlive; do
  call kdenlive.MainWindow.addTimelineClip "$work/clip.png" >/dev/null
  call kdenlive.MainWindow.addEffect frei0r.morvane >/dev/null
  call KMainWindow.activateAction file_save >/dev/null
done
if [ -n "$screenshot" ]; then  # the effect's whole panel, in the stack of the Effects layout
  # Changes are watched left of the monitors, which show a time code now and then.
  screen() { import -window root -crop 900x1200+0+0 -depth 8 rgb:"$1"; }
  steady() { until screen last.rgb && screen now.rgb && cmp -s last.rgb now.rgb; do :; done; }
  # changes COMMAND...: runs it and waits until the screen shows a change
  changes() { screen before.rgb && "$@" >/dev/null && until screen now.rgb && ! cmp -s before.rgb now.rgb; do :; done; }
  # The window filling the screen in Kdenlive's 4th layout (Effects), the stack raised; then the
  # separator between the docks and the timeline dragged down, each move shown before the next,
  # until the whole panel fits.
  changes gdbus call --session --dest "org.kde.kdenlive-$pid" --object-path /kdenlive/MainWindow_1 \
    --method org.freedesktop.DBus.Properties.Set org.qtproject.Qt.QWidget size "<(1600, 1200)>"
  changes call KMainWindow.activateAction load_layout4 && call KMainWindow.activateAction raise_effect_stack >/dev/null && steady
  xdotool mousemove 801 577 mousedown 1 && changes xdotool mousemove 801 600 && changes xdotool mousemove 801 1050
  xdotool mouseup 1 mousemove 0 0 && steady && import -window root "$screenshot"
fi
stop

# Every parameter the module reports (melt's metadata) is saved under its name at its default.
melt -query filter=frei0r.morvane >metadata.yml
python3 - project.kdenlive metadata.yml <<'PY' | tee compared.txt
import sys, xml.etree.ElementTree as t
saved = {e.get("name"): (e.text or "").split("=")[-1] for f in t.parse(sys.argv[1]).iter("filter")
         if any(p.text == "frei0r.morvane" for p in f.iter("property")) for e in f.iter("property")}
title, count = None, 0
for line in open(sys.argv[2]):
  key, _, value = line.strip().lstrip("- ").partition(": ")
  title = value if key == "title" else title
  if key == "default":
    count += 1
    got = saved.get(title, "(none)")
    try: same = abs(float(got) - float(value)) <= 5e-7
    except ValueError: same = got == value
    print(("ok      " if same else "FAILED  ") + f"{title}: saved {got}, default {value}")
params = [k for k in saved if not k.startswith(("mlt_", "kdenlive", "version"))]
print(f"ok      {count} parameters" if count == len(params) else f"FAILED  {count} of {params}")
PY
grep -q FAILED compared.txt && failed=$((failed + 1))

still_render "Kdenlive project, defaults" clip.png project.kdenlive

# A few controls as Kdenlive saves them, the project saved again by Kdenlive itself. The clip is
# opaque and stays so (Kdenlive lays the track over black).
for setting in Direction=down Morvane=0.125 "Pixel Size=0.124453" "Stretch Curve=sine-wave" \
  "Curve Phase=0.027778" Shading=sine-wave "Shading Interval Size=0.055118" \
  "Shading Channel(s)=rgb" "Shading Opacity=0.6" "Edge Mode=mirror"; do
  name=${setting%%=*} && name=${name//(/\\(} && name=${name//)/\\)}
  sed -i -E "s#(<property name=\"$name\">([0-9:.]+=)?)[^<]*#\1${setting#*=}#" project.kdenlive
done
before=$(stat -c %.9Y project.kdenlive)
start "$work/project.kdenlive"
call KMainWindow.activateAction file_save >/dev/null
until [ "$(stat -c %.9Y project.kdenlive)" != "$before" ]; do alive && sleep 0.1; done
stop
still_render "Kdenlive project, controls set" clip.png project.kdenlive --direction down --morvane 8 --pixel-size 2 \
  --stretch-curve sine-wave --curve-phase 10 --shading sine-wave --shading-interval-size 16 \
  --shading-channels rgb --shading-opacity 60 --edge-mode mirror
echo "Kdenlive: $failed failed"
[ "$failed" = 0 ]
