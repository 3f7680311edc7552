#!/usr/bin/env bash
# Installs everything Tamblo needs to build, run and test, and nothing more.
# Debian 12 (run as root) or macOS with Homebrew. A second run installs nothing.
set -euo pipefail

DEBIAN_PACKAGES=(
  # build
  cmake ninja-build g++ pkg-config
  # Qt 6: widgets, test, concurrent, multimedia (+ widgets), platform plugins
  qt6-base-dev qt6-base-dev-tools qt6-multimedia-dev qt6-qpa-plugins libgl-dev
  # the media backend of Qt Multimedia on Linux and the codecs it needs
  # (bad: the MPEG program and transport stream demuxers of .mpg/.mpeg/.ts and
  # the MPEG video parsers; ugly: the ASF demuxer of .wmv/.asf/.wma)
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav
  gstreamer1.0-plugins-bad gstreamer1.0-plugins-ugly
  # the tools Tamblo drives
  ffmpeg xorriso cdrskin eject
  # headless display for tests and screenshots
  xvfb xauth
  # the stack of a test function that hangs past its time limit (QtTest
  # prints it through gdb)
  gdb
  # installing: icon rendering, menu entry and AppStream checks, the .deb, window checks
  librsvg2-bin desktop-file-utils appstream dpkg-dev x11-utils
  # the parsers' fuzz targets (tools/fuzz.sh): clang, its libFuzzer and
  # sanitizer runtimes (libclang-rt-14-dev, only recommended by clang), and
  # llvm-symbolizer for readable stack traces
  clang libclang-rt-14-dev llvm
)

if [ "$(uname -s)" = "Darwin" ]; then
  command -v brew >/dev/null || { echo "Homebrew is needed: https://brew.sh" >&2; exit 1; }
  for f in qt ffmpeg cmake ninja librsvg; do
    brew list --formula "$f" >/dev/null 2>&1 || brew install "$f"
  done
  exit 0
fi

missing=()
for p in "${DEBIAN_PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi
echo "Installing: ${missing[*]}"
if [ "$(id -u)" -ne 0 ]; then
  echo "Run as root to install packages (missing: ${missing[*]})" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
