#!/usr/bin/env bash
# Installs the Debian packages the project needs. Idempotent; run as root (or with sudo).
# Usage: scripts/install-deps.sh [--bench] [--windows] [--wine] [--farm] [--openfx] [--editors]
#   --bench    OpenCV, which only the benchmark uses (as the cv::remap peer)
#   --windows  the MinGW-w64 cross compiler for the Windows module
#   --wine     Wine, to run the Windows module's checks
#   --farm     Slurm and MUNGE, for the README's render-farm example (a one-node cluster)
#   --openfx   what building melt with MLT's OpenFX host needs (scripts/build-mlt-openfx.sh)
#   --editors  Kdenlive and Shotcut, and Xvfb, xdotool and ImageMagick to test them on a private
#              X display (tests kdenlive_editor, shotcut_editor)
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config git python3
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  libopenimageio-dev openimageio-tools libcli11-dev
  clang clang-format libclang-rt-14-dev
  frei0r-plugins-dev ffmpeg melt
  gstreamer1.0-tools gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad
)
for option in "$@"; do
  case "$option" in
    --bench) packages+=(libopencv-dev) ;;
    --windows) packages+=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64) ;;
    --wine) packages+=(wine64) ;;
    --farm) packages+=(slurm-wlm munge) ;;
    --openfx)
      packages+=(libglib2.0-dev libavformat-dev libavfilter-dev libavdevice-dev libswscale-dev
        libswresample-dev libxml2-dev)
      ;;
    --editors) packages+=(kdenlive shotcut xvfb xauth xdotool imagemagick dbus libglib2.0-bin) ;;
    *)
      echo "usage: scripts/install-deps.sh [--bench] [--windows] [--wine] [--farm] [--openfx] [--editors]" >&2
      exit 2
      ;;
  esac
done

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "All the packages needed are installed."
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
echo "Installing: ${missing[*]}"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
# The downloaded package files are not kept: the build folders need the room more.
$SUDO apt-get clean
