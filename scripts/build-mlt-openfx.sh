#!/usr/bin/env bash
# Builds melt with MLT's OpenFX host (the `openfx` module), which Debian's MLT is too old to have,
# into OUT (once: a second run with melt already built does nothing). The source is MLT at commit
# 54f38d1, from the offline copy in MORVANE_THIRD_PARTY_DIR when there is one, else from GitHub.
# Prints the path of the environment file to source before running melt; the build's own output
# goes to OUT/build.log, shown when it fails.
#
# Usage: scripts/build-mlt-openfx.sh OUT
set -euo pipefail
repo="$(cd "$(dirname "$0")/.." && pwd)"
out="$(mkdir -p "$1" && cd "$1" && pwd)"
commit=54f38d1
env_file="$out/melt-env.sh"
build_melt() {
  bash "$repo/scripts/install-deps.sh" --openfx >&2
  local third_party
  third_party="$(bash "$repo/scripts/third-party-dir.sh")"
  echo "Building melt with MLT's OpenFX host in $out (a few minutes)" >&2
  rm -rf "$out/src" "$out/build"
  mkdir -p "$out/src"
  if [ -n "$third_party" ] && [ -f "$third_party/mlt-$commit.tar.gz" ]; then
    tar -xzf "$third_party/mlt-$commit.tar.gz" -C "$out/src"
  else
    git clone -q https://github.com/mltframework/mlt "$out/src"
    git -C "$out/src" checkout -q "$commit"
  fi

  # Only what a test needs: file input and output (avformat), project files (xml) and the OpenFX host.
  local modules=(-DMOD_AVFORMAT=ON -DMOD_XML=ON -DMOD_OPENFX=ON)
  for module in DECKLINK FREI0R GDK JACKRACK KDENLIVE MOVIT NORMALIZE OLDFILM OPENCV PLACEBO PLUS \
    PLUSGPL QT6 RESAMPLE RTAUDIO RUBBERBAND RNNOISE SDL2 SOX VIDSTAB VORBIS XINE GLAXNIMATE_QT6; do
    modules+=("-DMOD_$module=OFF")
  done
  {
    cmake -S "$out/src" -B "$out/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DGPL=ON -DGPL3=ON \
      -DBUILD_TESTING=OFF "${modules[@]}" && cmake --build "$out/build" -j "$(nproc)"
  } >"$out/build.log" 2>&1 || { tail -n 40 "$out/build.log" >&2; exit 1; }
}
[ -x "$out/build/out/bin/melt" ] || build_melt

# melt run from the build tree, with its modules, data and profiles found there, first on the PATH.
cat >"$env_file" <<ENV
export PATH="$out/build/out/bin:\$PATH"
export MLT_REPOSITORY="$out/build/out/lib/mlt" MLT_DATA="$out/src/src/modules"
export MLT_PROFILES_PATH="$out/src/profiles" LD_LIBRARY_PATH="$out/build/out/lib\${LD_LIBRARY_PATH:+:\$LD_LIBRARY_PATH}"
ENV
echo "$env_file"
