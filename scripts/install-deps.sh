#!/usr/bin/env bash
# Installs the Debian packages the project needs. Idempotent; run as root.
# With --bench, also OpenCV, which only the benchmark uses (as the cv::remap peer).
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config git
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  libopenimageio-dev openimageio-tools libcli11-dev
  clang clang-format libclang-rt-14-dev
  frei0r-plugins-dev ffmpeg melt
)
if [ "${1:-}" = "--bench" ]; then packages+=(libopencv-dev); fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi

$SUDO apt-get update -qq
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
else
  echo "All build dependencies are installed."
fi
