#!/usr/bin/env bash
# Runs the shell examples of README.md as written, read from its fenced blocks, and checks what
# they make. Every block is run here or named below with the reason it is not; any other block
# fails the test. In order:
# - the sample render: its output is the README's picture;
# - the install line: it builds the release preset, makes the Debian package and installs it;
#   then the package's `morvane` (on the PATH, loading /usr/lib/morvane/Morvane.so) renders what
#   the build folder's does;
# - the renderer's examples: the curve graph is the README's picture;
# - the farm example, on a one-node Slurm cluster started here, with 6 frames in chunks of 2: its
#   frames equal one local render of the whole shot, and with one frame made unreadable the task
#   of that chunk fails with the renderer's exit code;
# - the ffmpeg, melt and GStreamer examples, on a short clip made here, with the installed frei0r
#   modules (no FREI0R_PATH): their frames are bit for bit what `morvane render` makes of them;
# - the OpenFX example, with the melt the README builds and the installed bundle: its frames are
#   what `morvane render` makes of the frames that melt decodes (see scripts/test-openfx.sh).
# The package is removed, the daemons are stopped and the temporary folder is deleted at the end.
# Usage: scripts/test-readme.sh   (as root, after building the default preset; under a minute when
#   the release preset is built already). Installs what it needs (scripts/install-deps.sh --farm).
set -euo pipefail
repo="$(realpath "$(dirname "$0")/..")"
fail() { echo "FAILED   $*" >&2; exit 1; }
check() { "${@:2}" || fail "$1"; echo "ok       $1"; } # check WHAT COMMAND...
bash "$repo/scripts/install-deps.sh" --farm >/dev/null
if dpkg-query -W -f='${Status}' morvane 2>/dev/null | grep -q "install ok installed"; then
  fail "a morvane package is installed already; remove it first"
fi
work="$(mktemp -d)"
stop() { for pid in $(cat "$work"/*.pid); do kill "$pid" && tail --pid="$pid" -f /dev/null; done; }
trap 'stop 2>/dev/null; apt-get remove -y -qq morvane >/dev/null 2>&1; rm -rf "$work"' EXIT
export SLURM_CONF="$work/slurm.conf" GST_REGISTRY="$work/gst-registry.bin"
unset FREI0R_PATH MORVANE_MODULE
cd "$work"
awk '/^```/ { f = f ? "" : sprintf("example-%02d.%s", ++n, substr($0, 4)); next } f { print > f }' \
  "$repo/README.md"

# run DIR EXAMPLE: one example as written, in DIR; its output is in EXAMPLE.log
run() {
  echo "run      $2"
  (cd "$1" && timeout -k 5 "${limit:-3600}" bash -euo pipefail "$work/$2") \
    </dev/null >"$work/$2.log" 2>&1 || { cat "$work/$2.log" >&2; fail "README example $2"; }
}
ff() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }
frames() { ff "${@:1:$#-1}" -f rawvideo -pix_fmt rgba "${@: -1}"; } # frames INPUT... OUT.rgba
same() { # same INPUT...: those frames are what `morvane render` makes of in.mov
  frames "$@" got.rgba
  check "the frames are what morvane makes of in.mov" cmp got.rgba ref.rgba
}

# A 3-frame clip, 160 x 96, half transparent, stored losslessly, and its frames as PNG files; a
# 6-frame shot for the farm.
ff -f lavfi -i testsrc2=size=160x96:rate=5:duration=0.6,format=rgba,colorchannelmixer=aa=0.5 \
  -c:v png in.mov
ff -i in.mov -start_number 0 in-%d.png
cp in-0.png in.png
frames -i in.mov in.rgba
ff -f lavfi -i testsrc2=size=64x48:rate=5 -frames:v 6 -start_number 1 -pix_fmt gbrpf32le \
  shot.%04d.exr

# The states of the array tasks of JOB, "TASK STATE EXIT,...".
task_states() {
  scontrol -o show job "$1" | awk -F'[ =]' '{
    for (i = 1; i < NF; i++) v[$i] = $(i + 1)
    print v["ArrayTaskId"], v["JobState"], v["ExitCode"] }' | sort -n | paste -sd,
}

farm() { # farm EXAMPLE: a one-node cluster here; the job's command run locally, then the example
  mungekey -c -k munge.key
  munged -f --key-file="$work/munge.key" --socket="$work/munge.sock" \
    --pid-file="$work/munged.pid" --log-file="$work/munged.log" --seed-file="$work/munged.seed"
  printf '%s\n' ClusterName=readme "SlurmctldHost=$(hostname -s)" \
    "AuthInfo=socket=$work/munge.sock" ProctrackType=proctrack/linuxproc \
    "StateSaveLocation=$work" "SlurmdSpoolDir=$work/spool" "$(slurmd -C | head -1)" \
    "SlurmctldPidFile=$work/slurmctld.pid" "SlurmdPidFile=$work/slurmd.pid" \
    "PartitionName=all Nodes=ALL Default=YES" >"$SLURM_CONF"
  slurmctld
  slurmd
  timeout 60 sh -c 'until sinfo -h -o %T | grep -qx idle; do sleep 1; done' || fail "no idle node"
  # 6 frames in chunks of 2 (should the example set its counts otherwise, its tasks fail). The
  # job's command, run once here as the one task of a chunk as long as the shot, renders it all
  # in whole/.
  sed 's/^export frames=240 chunk=24$/export frames=6 chunk=2/' "$1" >farm.sh
  sed -n "/--wrap '/,\$ { /--wrap/d; s/'\$//; s#out/#whole/#; p }" farm.sh >whole.sh
  mkdir whole
  frames=6 chunk=6 SLURM_ARRAY_TASK_ID=0 bash -euo pipefail whole.sh >/dev/null 2>&1 ||
    fail "one run of the job's command"
  # Then again with frame 3 unreadable: the task of frames 3-4 fails.
  for task2 in "COMPLETED 0:0" "FAILED 1:0"; do
    rm -rf out
    [ "$task2" = "COMPLETED 0:0" ] || echo unreadable >shot.0003.exr
    run . farm.sh
    job=$(grep -o '[0-9]*$' farm.sh.log)
    timeout 300 sh -c "while squeue -h -j $job | grep -q .; do sleep 1; done" ||
      fail "job $job is not done"
    tasks=$(task_states "$job")
    check "array tasks: $tasks" [ "$tasks" = "0 COMPLETED 0:0,1 $task2,2 COMPLETED 0:0" ]
    [ "$task2" = "COMPLETED 0:0" ] || continue
    for n in 1 2 3 4 5 6; do
      check "frame $n from the farm is frame $n of one run" \
        idiff -q -fail 0 -warn 0 whole/shot.000$n.exr out/shot.000$n.exr
    done
  done
}

for example in example-*; do
  case "$(<"$example")" in
    *scripts/render-sample.sh* | *scripts/build-windows.sh* | *"--preset bench"*)
      echo "by CI    $example: .ci/run runs it" ;;
    *MORVANE_AE_SDK_DIR*)
      echo "not here $example: needs the host's SDK (and the .bat, Windows and Visual Studio)" ;;
    *build/sample-out.png*)
      run "$repo" "$example"
      check "the output is the README's picture" \
        cmp "$repo"/build/sample-out.png "$repo"/assets/sample-rendered.png ;;
    *"cpack -G DEB"*)
      run "$repo" "$example"
      check "morvane is on the PATH from the package" \
        [ "$(command -v morvane)" = /usr/bin/morvane ]
      check "the package installs the OpenFX bundle" \
        [ -f /usr/OFX/Plugins/Morvane.ofx.bundle/Contents/Linux-x86-64/Morvane.ofx ] ;;
    *scripts/build-mlt-openfx.sh*) run "$repo" "$example" ;;
    *openfx.com.orbrenn.morvane*)
      (
        source "$repo/build/mlt-openfx/melt-env.sh"
        run . "$example"
        melt -silent in.mov -consumer avformat:decoded.mov vcodec=png pix_fmt=rgba </dev/null \
          >/dev/null 2>&1
        ff -i decoded.mov -start_number 0 decoded-%d.png
        last=$(($(ls decoded-*.png | wc -l) - 1))
        morvane render decoded-%d.png ofx-%d.png --frames 0-$last --direction down --morvane 8 \
          --edge-mode mirror >/dev/null
        frames -start_number 0 -i ofx-%d.png ofx.rgba
        frames -i out.mov got.rgba
        check "the OpenFX example's frames are what morvane makes of melt's" cmp got.rgba ofx.rgba
      ) ;;
    *"morvane info"*)
      run . "$example"
      check "info names the installed module" \
        grep -q '^  module       /usr/lib/morvane/Morvane.so$' "$example.log"
      check "the curve graph is the README's picture" \
        cmp graph.png "$repo"/assets/curve-graph-sine-wave.png
      "$repo"/build/default/cli/morvane render in.png built.png --direction down --morvane 8 \
        >/dev/null
      check "the package's morvane renders what the build folder's does" cmp built.png out.png
      # What the README says the ffmpeg, melt and GStreamer examples make of in.mov.
      morvane render in-%d.png ref-%d.png --frames 0-2 --direction down --morvane 8 >/dev/null
      frames -start_number 0 -i ref-%d.png ref.rgba
      ! cmp -s ref.rgba in.rgba || fail "the effect changes nothing" ;;
    *sbatch*) farm "$example" ;;
    *ffmpeg*)
      run . "$example"
      same -i out.mov ;;
    # melt 7 sometimes writes nothing at all (see scripts/test-frei0r.sh): it is run again then.
    *melt*)
      for _ in 1 2 3 4 5 6 7 8 9 10; do
        rm -f out.mov
        (limit=120 run . "$example") || :
        [ ! -s out.mov ] || break
      done
      same -i out.mov ;;
    *gst-launch-1.0*)
      run . "$example"
      same -start_number 0 -i out-%04d.png ;;
    *) fail "README example $example is neither run here nor named as run elsewhere" ;;
  esac
done
echo "README examples: all passed"
