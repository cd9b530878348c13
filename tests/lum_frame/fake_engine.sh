#!/bin/sh
# A stand-in for vexa_sta --ipc_sh: prompts, answers every line with a prompt,
# and ends on "exit". Lets the window tests run an engine cycle without the
# real engine.
echo "tcl> "
while IFS= read -r line; do
  case "$line" in
    exit) exit 0 ;;
  esac
  echo "tcl> "
done
