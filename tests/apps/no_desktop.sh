#!/usr/bin/env bash
# Without a desktop pages and views are refused in one line, and files are rendered as ever: no_desktop.sh WINE VBLUR.
set -euo pipefail

wine=$1 vblur=$2
work=$(mktemp -d)
# Another one's desktop stays until its last program ends, and would be this one's.
export VBLUR_WINEPREFIX=$work/prefix
trap 'WINEPREFIX=$VBLUR_WINEPREFIX /usr/lib/wine/wineserver64 -k -w 2>/dev/null || true; rm -rf "$work"' EXIT
unset DISPLAY
cd "$work"
# Into files: what Wine leaves running keeps pipes open.
vblur() { "$wine" "$vblur" "$@" >out.txt 2>err.txt; }

for command in "chart a.png --size 32x24" "render a.png b.png --blur 2 --save-job job.json"; do
  vblur $command || { cat err.txt; echo "vblur $command: refused"; exit 1; }
done
expected="vblur: the page FullBlurPPG cannot be shown: the session has no desktop, expected one where windows can be made, also those that nobody sees"
for command in "page job.json" "view job.json view.png"; do
  code=0
  vblur $command || code=$?
  [ "$code" = 1 ] || { echo "vblur $command: exit code $code, expected 1"; exit 1; }
  [ "$(tr -d '\r' <err.txt)" = "$expected" ] || { echo "vblur $command says: $(cat err.txt)"; exit 1; }
done
[ ! -e view.png ] || { echo "view.png: written"; exit 1; }
echo "files need no desktop"
