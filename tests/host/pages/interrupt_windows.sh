#!/usr/bin/env bash
# Ctrl-C while a window is open ends it as it ends other commands: interrupt_windows.sh VBLUR.exe. Without xdotool it
# passes over everything, with exit code 77.
set -euo pipefail

program=$(realpath "$1")
tools=$(realpath "$(dirname "$0")/../../../tools/windows")
command -v xdotool >/dev/null && command -v Xvfb >/dev/null || { echo "xdotool or Xvfb is missing"; exit 77; }

# A screen and a Wine of its own: no other window takes the keys.
if [ -z "${VBLUR_OWN_SCREEN:-}" ]; then
  VBLUR_OWN_SCREEN=1 VBLUR_SCREEN='' exec "$tools/with-screen" "$0" "$@"
fi
scratch=$(mktemp -d)
export VBLUR_WINEPREFIX=$scratch/prefix
trap 'WINEPREFIX=$scratch/prefix /usr/lib/wine/wineserver64 -k || true; rm -rf "$scratch"' EXIT
mkdir "$scratch/work"
cd "$scratch/work"

"$tools/wine" "$program" -q chart chart.png --size 320x200 >../out 2>&1 </dev/null
cat >job.json <<'JSON'
{"version": 1, "input": {"file": "chart.png"}, "output": {"file": "blurred.png"}, "properties": {"Blur": 30}}
JSON

# The number of a window that shows within a minute.
find_window() {
  local found
  for ((tried = 0; tried < 300; ++tried)); do
    found=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1 || true)
    [ -z "$found" ] || { echo "$found"; return; }
    sleep 0.2
  done
  cat ../out ../err >&2
  echo "no window $1 shows" >&2
  return 1
}

# interrupt TITLE WORD...: starts a command, opens the picker of colours if the place of its chip is known, and presses
# Ctrl-C.
interrupt() {
  local title=$1 window status=0
  shift
  "$tools/wine" "$program" "$@" >../out 2>../err </dev/null &
  local started=$!
  window=$(find_window "$title")
  sleep 1
  if [ -n "${chip:-}" ]; then
    # shellcheck disable=SC2086
    xdotool mousemove --window "$window" $chip click 1
    find_window '^Color$' >/dev/null
  fi
  # Wine hands it to the program as the console's.
  kill -INT "$started"
  for ((tried = 0; tried < 100; ++tried)); do
    kill -0 "$started" 2>/dev/null || break
    sleep 0.1
  done
  kill -KILL "$started" 2>/dev/null && { echo "vblur $*: goes on after Ctrl-C"; exit 1; }
  wait "$started" || status=$?
  [ "$status" = 130 ] || { cat ../err; echo "vblur $*: exit code $status, expected 130"; exit 1; }
  [ "$(tr -d '\r' <../err)" = "vblur: interrupted" ] || { cat ../err; echo "vblur $*: expected: interrupted"; exit 1; }
  [ ! -s ../out ] || { cat ../out; echo "vblur $*: expected no output"; exit 1; }
  [ "$(ls)" = $'chart.png\njob.json' ] || { ls; echo "vblur $*: left something behind"; exit 1; }
  echo "vblur $*: interrupted"
}

interrupt '^V_Blur$' page job.json --window --save-job after.json
interrupt 'vblur view' view job.json view.png --window --save-job after.json
# A dialog of the system's own, in whose loop nobody asks whether to go on.
# The place is that of docs/images/windows/page-crop.png.
chip='107 273'
interrupt '^V_Blur$' page job.json --page crop --window --save-job after.json
