#!/usr/bin/env bash
# try.sh BUILD SOURCE COMPILER [PROGRAM [FILE]]: installs BUILD into a scratch folder, builds SOURCE there, and
# runs its program with the installed FILE, if any.
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$1" --prefix "$scratch/prefix" >"$scratch/install.log" || { cat "$scratch/install.log"; exit 1; }
cp -r "$2" "$scratch/source"
cmake -S "$scratch/source" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$scratch/prefix" -DCMAKE_CXX_COMPILER="$3" \
  -DCMAKE_BUILD_TYPE=Release
cmake --build "$scratch/build"
"$scratch/build/${4:-consumer}" ${5:+"$scratch/prefix/$5"}
