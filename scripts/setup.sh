#!/usr/bin/env bash
# Installs every Debian package the project needs to build, run and test.
# Idempotent: when everything is there already it says nothing and installs nothing.
set -euo pipefail

packages=(
  # toolchain
  g++ cmake ninja-build pkg-config git
  # front end
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6test6 libgl-dev libtinyxml2-dev
  # interpreter, report database
  tcl-dev libsqlite3-dev
  # engine
  opensta opensta-dev libreadline-dev zlib1g-dev
  # example designs and technology
  yosys qflow-tech-osu050 qflow-tech-osu035 qflow-tech-osu018
  # tests and benchmarks
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  # running the GUI headless and looking at it
  xvfb xauth imagemagick fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
