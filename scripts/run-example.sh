#!/usr/bin/env bash
# Installs what is needed, builds everything and opens the GUI on the bundled example project.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
project="examples/datapath/datapath.vpf"
if [ -x build/bin/vexa_lumex ]; then
  exec build/bin/vexa_lumex "$project"
fi
exec build/bin/vexa_sta "$project"
