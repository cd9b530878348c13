#!/usr/bin/env bash
# Configures and builds the whole tree into build/ (Ninja, RelWithDebInfo).
set -euo pipefail
cd "$(dirname "$0")/.."
if [ ! -f build/CMakeCache.txt ]; then
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
fi
cmake --build build
