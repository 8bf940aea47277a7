#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running need, and
# any named on the command line.
# Does nothing when every package is already present.
set -euo pipefail

packages=(
  cmake ninja-build ccache pkg-config g++
  qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev libgl-dev
  libexempi-dev
  libboost-dev libboost-date-time-dev
  libgtest-dev libbenchmark-dev
  clang-format
  fonts-dejavu-core
)
# Extra packages a target needs beyond these (make lint: clang-tidy; make
# fuzz: clang and libFuzzer's runtime).
packages+=("$@")

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Need root or sudo to install: ${missing[*]}" >&2; exit 1; }
  sudo="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq || true
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
