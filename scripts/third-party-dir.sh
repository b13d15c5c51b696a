#!/usr/bin/env bash
# Prints the folder of offline copies of third-party sources (the OpenFX headers, MLT), or nothing
# where there is none: MORVANE_THIRD_PARTY_DIR when set, else the first folder listed in
# cmake/third-party-dirs.txt that holds one. Builds fetch from the public repositories where none
# is found.
set -euo pipefail
repo="$(cd "$(dirname "$0")/.." && pwd)"
while read -r dir; do
  case "$dir" in '' | '#'*) continue ;; /*) ;; *) dir="$repo/$dir" ;; esac
  if [ -f "$dir/SHA256SUMS" ]; then
    (cd "$dir" && pwd)
    exit 0
  fi
done < <(echo "${MORVANE_THIRD_PARTY_DIR:-}" && cat "$repo/cmake/third-party-dirs.txt")
