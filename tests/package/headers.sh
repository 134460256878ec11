#!/usr/bin/env bash
# headers.sh INCLUDE C-COMPILER C++-COMPILER: compiles each installed header alone.
set -euo pipefail
include=$1 c=$2 cpp=$3
warnings=(-Wall -Wextra -pedantic-errors -Werror -fsyntax-only -I "$include")
cd "$include"
[ "$(find . -mindepth 2 -maxdepth 2 | sort | tr '\n' ' ')" = \
  "./vblur/Blur.h ./vblur/blur.h ./vblur/platform ./vblur/properties " ] || { find . -maxdepth 2; exit 1; }
for header in vblur/Blur.h vblur/blur.h; do
  echo "$header"
  echo "#include <$header>" | "$c" -std=c99 "${warnings[@]}" -x c -
  echo "#include <$header>" | "$cpp" -std=c++17 "${warnings[@]}" -x c++ -
done
if echo '#include <vblur/Blur.h>' | "$cpp" -std=c++14 "${warnings[@]}" -x c++ - 2>"${TMPDIR:-/tmp}/vblur-headers.$$"; then
  echo "vblur/Blur.h: accepted as C++14"; exit 1
fi
said=$(cat "${TMPDIR:-/tmp}/vblur-headers.$$"); rm -f "${TMPDIR:-/tmp}/vblur-headers.$$"
[[ "$said" == *"needs C++17"* ]] || { echo "$said"; exit 1; }
# Each in a compiler of its own, as many at once as there are processors.
find vblur -name '*.h' | sort | xargs -P "$(nproc)" -I{} \
  sh -c 'echo "{}" && echo "#include <{}>" | "$@"' sh "$cpp" -std=c++20 "${warnings[@]}" -x c++ -
