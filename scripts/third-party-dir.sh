#!/usr/bin/env bash
# Prints the folder of offline copies of third-party sources (the OpenFX headers, MLT), or nothing
# where there is none: MORVANE_THIRD_PARTY_DIR when set, else a `shared/third_party` folder beside
# the checkout or in /work. Builds fetch from the public repositories where none is found.
set -euo pipefail
repo="$(cd "$(dirname "$0")/.." && pwd)"
for dir in "${MORVANE_THIRD_PARTY_DIR:-}" "$repo/../shared/third_party" /work/shared/third_party; do
  if [ -n "$dir" ] && [ -f "$dir/SHA256SUMS" ]; then
    (cd "$dir" && pwd)
    exit 0
  fi
done
