#!/usr/bin/env bash
# try.sh PREFIX SOURCE C-COMPILER C++-COMPILER PROGRAM [ARGUMENT...]: builds a copy of SOURCE against PREFIX in a scratch
# folder, and runs its PROGRAM.
set -euo pipefail
prefix=$1 source=$2 c=$3 cpp=$4 program=$5
shift 5
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp -r "$source" "$scratch/source"
CC=$c CXX=$cpp cmake -S "$scratch/source" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release
cmake --build "$scratch/build"
"$scratch/build/$program" "$@"
