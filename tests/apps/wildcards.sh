#!/usr/bin/env bash
# No shell of Windows puts files in the place of names with * and ?, the program does: wildcards.sh WINE VBLUR.
set -euo pipefail

wine=$1 vblur=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# Into files: what Wine leaves running keeps pipes open.
vblur() { "$wine" "$vblur" "$@" >out.txt 2>err.txt; }
run() { vblur "$@" || { cat err.txt; echo "vblur $*: exit code $?"; exit 1; }; }
refused() { # CODE MESSAGE ARGUMENT...: one line, and nothing is written.
  local expected=$1 message=$2 code=0
  shift 2
  vblur "$@" || code=$?
  [ "$code" = "$expected" ] || { echo "vblur $*: exit code $code, expected $expected"; exit 1; }
  [ "$(tr -d '\r' <err.txt)" = "vblur: $message" ] || { echo "vblur $* says: $(cat err.txt)"; exit 1; }
}
holds() { # FOLDER NAMES
  local found
  found=$(cd "$1" && echo *)
  [ "$found" = "$2" ] || { echo "$1 holds: $found, expected: $2"; exit 1; }
}

mkdir in all some few
run chart in/b1.png --size 32x24
for name in a2 a1 grün; do cp in/b1.png "in/$name.png"; done
run render 'in\*.png' all --blur 2
holds all "a1.png a2.png b1.png grün.png"
run 'in/gr?n.*' 'in\A?.PNG' some --blur 2
holds some "a1.png a2.png grün.png"
run -q render --blur 2 --mask in/a1.png --overwrite -- 'in/b*' few
holds few b1.png
run info 'in/*'
names=$(sed -n 's/: png, .*//p' out.txt)
[ "$(tr -d '\r' <<<"$names")" = $'in/a1.png\nin/a2.png\nin/b1.png\nin/grün.png' ] || { echo "info: $names"; exit 1; }
# A name that no file matches is told by whoever uses it, after what stands before it.
refused 3 'in\*.jpg: cannot read: no such file' render 'in\*.jpg' all --blur 2
refused 3 '*.png: cannot read: no such file' '*.png' all
refused 3 'none.png: cannot read: no such file' render none.png 'in\*.jpg' all --overwrite
refused 4 'a?b.png: cannot write: a file name holds none of < > : " | ? *' render in/a1.png 'a?b.png'
# Neither names of properties nor options' values are names of files.
vblur properties 'B*' && { echo "properties B*: expected to be refused"; exit 1; }
grep -q 'unknown property "B\*"' err.txt || { echo "properties B* says: $(cat err.txt)"; exit 1; }
vblur render in/a1.png out.png --mask 'in/b?.png' && { echo "--mask in/b?.png: expected to be refused"; exit 1; }
grep -q '^vblur: in/b?.png: cannot read: no such file' err.txt || { echo "--mask says: $(cat err.txt)"; exit 1; }
echo "files are found"
