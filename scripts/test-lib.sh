# What the real-host tests share (sourced): BUILD_DIR as $1, the morvane tool, the frei0r modules
# of the build, a scratch folder to work in, and comparing frames with melt's.
build="$(realpath "$1")"
cli="$(realpath "${MORVANE_CLI:-$build/cli/morvane}")"
export FREI0R_PATH="$build/frei0r-1"
work="$(mktemp -d)"
trap '[ -n "${MORVANE_KEEP:-}" ] || rm -rf "$work"' EXIT
cd "$work"
failed=0

ff() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }
check() { # check NAME EXPECTED ACTUAL: the same frames, and some
  [ -s "$2" ] && cmp -s "$2" "$3" && echo "ok      $1" && return
  failed=$((failed + 1)) && echo "FAILED  $1 ($(cmp "$2" "$3" 2>&1 | head -1))"
}
# melt renders into raw RGBA. MLT 7's avformat consumer starts its thread first and marks
# itself running after: when a busy machine holds up melt's main thread in between, the new thread
# finds the consumer not running and writes nothing, and if it has ended before the mark is set,
# nothing clears it and melt waits forever. It is MLT's: melt with no filter at all, beside three
# busy loops on this project's two-core machine, wrote nothing (and exited 0) in 4 runs of 20.
# Such a run (nothing written, a clean exit or the time limit, which a normal run of a few
# frames stays far below) is repeated, up to 10 runs in all. Frames are 8-bit RGBA unless
# $image_format and $pix_fmt name others (MLT's and ffmpeg's names: rgba64, rgba64le).
melt_render() { # melt_render OUT.raw MELT-ARGS...
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    rm -f melt.nut && status=0 && timeout -k 5 120 melt -silent "${@:2}" -consumer avformat:melt.nut \
      vcodec=rawvideo pix_fmt="${pix_fmt:-rgba}" mlt_image_format="${image_format:-rgba}" an=1 \
      real_time=0 </dev/null >melt.log 2>&1 || status=$?
    [ -s melt.nut ] || [[ ! $status =~ ^(0|124|137)$ ]] && break
    echo "note: melt wrote nothing (exit $status); running it again" >&2
  done
  [ "$status" = 0 ] || cat melt.log >&2
  ff -i melt.nut -frames:v 3 -f rawvideo -pix_fmt "${pix_fmt:-rgba}" "$1" || : >"$1"
}
still_render() { # still_render NAME IMAGE PROJECT OPTIONS...: PROJECT's first 3 frames in melt
  "$cli" render "$2" cli.png "${@:4}" >cli.log 2>&1 || cat cli.log >&2  # and IMAGE in morvane
  for _ in 1 2 3; do ff -i cli.png -f rawvideo -pix_fmt rgba -; done >expected.rgba
  melt_render melt.rgba "$3" out=2
  check "$1" expected.rgba melt.rgba
}
