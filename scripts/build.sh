#!/usr/bin/env bash
# Configures and builds the whole tree into build/ (Ninja, RelWithDebInfo).
set -euo pipefail
cd "$(dirname "$0")/.."
if [ ! -f build/CMakeCache.txt ]; then
  launcher=()
  if command -v ccache >/dev/null; then
    launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  fi
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
fi
cmake --build build
