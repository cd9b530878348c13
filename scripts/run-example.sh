#!/usr/bin/env bash
# Installs what is needed, builds everything and opens the GUI on the bundled example project.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
# The engine writes its report database beside the project; a copy under
# build/ keeps the repository's examples as they are.
rm -rf build/example-run
mkdir -p build/example-run
cp -r examples/datapath build/example-run/
project="build/example-run/datapath/datapath.vpf"
if [ -x build/bin/vexa_lumex ]; then
  exec build/bin/vexa_lumex "$project"
fi
exec build/bin/vexa_sta "$project"
