#!/usr/bin/env bash
# without_programs.sh SOURCE BUILD C-COMPILER C++-COMPILER [LAUNCHER]: configures, builds and installs SOURCE without the
# stand-alone host and its programs, and builds against that.
set -euo pipefail
source=$1 build=$2 c=$3 cpp=$4 launcher=${5:-}
rm -rf "$build"
trap 'rm -rf "$build"' EXIT
configure() {
  CC=$c CXX=$cpp cmake -S "$source" -B "$build/$1" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=6 ${launcher:+"-DCMAKE_CXX_COMPILER_LAUNCHER=$launcher"} -DVBLUR_BUILD_APPS=OFF "${@:2}"
}
configure with_tests
cmake --build "$build/with_tests" --target properties_tests
configure libraries -DVBLUR_BUILD_TESTS=OFF -DVBLUR_BUILD_BENCH=OFF
cmake --build "$build/libraries"
cmake --install "$build/libraries" --prefix "$build/prefix"
bash "$source/tests/package/try.sh" "$build/prefix" "$source/tests/package/consumer" "$c" "$cpp" consumer
