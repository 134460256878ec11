#!/usr/bin/env bash
# The pipes of a shell, which are none of Windows' own: shell_pipes.sh WINE VBLUR.
set -euo pipefail

wine=$1 vblur=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
vblur() { "$wine" "$vblur" "$@" 2>err.txt; }
said() { tr -d '\r' <err.txt; }
# Starts what keeps the standard output open.
vblur chart in.png --size 32x24 >out.txt

left() { # MESSAGE ARGUMENT...: the reader leaves before anything is written.
  local message=$1 code=0
  shift
  { sleep 0.5; vblur "$@"; } | true || code=${PIPESTATUS[0]}
  [ "$code" = 141 ] || { echo "vblur $* | true: exit code $code, expected 141; it says: $(cat err.txt)"; exit 1; }
  [ "$(said)" = "$message" ] || { echo "vblur $* | true: says: $(cat err.txt)"; exit 1; }
}
left "" properties
left "" help render
left "vblur: standard output: cannot write: Broken pipe" in.png -

vblur render in.png out.png --blur 2 >out.txt
cat in.png | vblur - - --blur 2 | cat >piped.png
cmp piped.png out.png
code=0
true | vblur - lost.png >out.txt || code=$?
[ "$code" = 3 ] || { echo "true | vblur - lost.png: exit code $code, expected 3"; exit 1; }
[ "$(said)" = "vblur: standard input: cannot read: it is empty, a picture was expected" ] ||
  { echo "true | vblur - lost.png says: $(cat err.txt)"; exit 1; }
echo "pipes of a shell end as on Linux"
