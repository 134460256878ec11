#!/usr/bin/env bash
# install.sh BUILD PREFIX: installs BUILD into an empty PREFIX.
set -euo pipefail
rm -rf "$2"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --install "$1" --prefix "$2" >"$log" || { cat "$log"; exit 1; }
