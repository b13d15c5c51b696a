#!/usr/bin/env bash
# From a fresh checkout: installs the build dependencies, builds the project
# with the default preset and renders the sample image with the effect.
# Result: build/sample-out.png (input: assets/sample.png).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default
cmake --build --preset default

build/default/cli/morvane render assets/sample.png build/sample-out.png \
  --direction down --morvane 24 --pixel-size 2 --stretch-curve exp-up \
  --stretch-start-offset 15 --edge-mode mirror \
  --shading line --shading-channels rgb --shading-opacity 60 --shading-interval-size 16
echo "Rendered build/sample-out.png from assets/sample.png"
