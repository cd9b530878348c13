#!/usr/bin/env bash
# Installs what is needed, builds everything and runs every test (labels: unit, engine, gui).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
ctest --test-dir build --output-on-failure -j2 "$@"
