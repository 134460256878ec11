#!/usr/bin/env bash
# A run that is killed leaves whole files only, and the next one goes on from them: killed_run.sh WINE VBLUR.
set -euo pipefail

wine=$1 vblur=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# Into files: what Wine leaves running keeps pipes open.
run() { "$wine" "$vblur" "$@" >out.txt 2>err.txt || { cat err.txt; echo "vblur $*: exit code $?"; exit 1; }; }
whole() { # Every picture there can be read to its end.
  /usr/bin/python3 -c '
import glob, struct, sys
for name in glob.glob("frame.*.png"):
    data = open(name, "rb").read()
    if data[:8] != b"\x89PNG\r\n\x1a\n" or data[-8:-4] != b"IEND":
        sys.exit(f"{name}: not whole")
'
}

run chart plate.png --size 1200x800
"$wine" "$vblur" render plate.png frame.%04d.png --frames 1-200 --blur 40 >out.txt 2>err.txt &
killed=$!
for _ in $(seq 300); do
  ls frame.*.png >/dev/null 2>&1 && break
  sleep 0.1
done
kill -KILL "$killed"
wait "$killed" 2>/dev/null || true
# The process of Wine's server sees the end a moment later.
sleep 1
count=$(find . -name 'frame.????.png' | wc -l)
[ "$count" -gt 0 ] && [ "$count" -lt 200 ] || { echo "$count frames: expected some and not all"; exit 1; }
whole
run render plate.png frame.%04d.png --frames 1-20 --blur 40 --skip-existing
[ "$(find . -name 'frame.????.png' | wc -l)" -ge 20 ] || { echo "the second run made too few frames"; exit 1; }
whole
others=$(find . -type f ! -name 'frame.????.png' ! -name plate.png ! -name out.txt ! -name err.txt)
[ -z "$others" ] || { echo "left behind: $others"; exit 1; }
echo "$count frames before the end, all whole"
