#!/usr/bin/env bash
# try.sh BUILD CONSUMER COMPILER: installs BUILD into a scratch folder and builds and runs CONSUMER there.
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$1" --prefix "$scratch/prefix" >"$scratch/install.log" || { cat "$scratch/install.log"; exit 1; }
cp -r "$2" "$scratch/consumer"
cmake -S "$scratch/consumer" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$scratch/prefix" -DCMAKE_CXX_COMPILER="$3" \
  -DCMAKE_BUILD_TYPE=Release
cmake --build "$scratch/build"
"$scratch/build/consumer"
