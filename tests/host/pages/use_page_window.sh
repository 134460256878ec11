#!/usr/bin/env bash
# Operates the window of the pages as a user does, with the mouse and the keys of a screen that nobody sees:
# use_page_window.sh HOST_PAGES_TESTS.exe. Without xdotool it passes over everything, with exit code 77.
set -euo pipefail

program=$(realpath "$1")
tools=$(realpath "$(dirname "$0")/../../../tools/windows")
command -v xdotool >/dev/null && command -v Xvfb >/dev/null || { echo "xdotool or Xvfb is missing"; exit 77; }

# A screen and a Wine of its own: no other window takes the keys.
if [ -z "${VBLUR_OWN_SCREEN:-}" ]; then
  VBLUR_OWN_SCREEN=1 DISPLAY= exec "$tools/with-screen" "$0" "$@"
fi
scratch=$(mktemp -d)
export VBLUR_WINEPREFIX=$scratch/prefix
trap 'WINEPREFIX=$scratch/prefix /usr/lib/wine/wineserver64 -k || true; rm -rf "$scratch"' EXIT

"$tools/wine" "$program" --gtest_also_run_disabled_tests --gtest_filter=PageFrame.DISABLED_ShowsWhatAUserDoes \
  >"$scratch/out" 2>&1 </dev/null &

for ((tried = 0; tried < 300; ++tried)); do
  window=$(xdotool search --onlyvisible --name '^V_Blur$' 2>/dev/null | head -1 || true)
  [ -z "$window" ] || break
  sleep 0.2
done
[ -n "$window" ] || { cat "$scratch/out"; echo "the window does not show"; exit 1; }
sleep 1
xdotool windowfocus "$window"
sleep 0.5

# Places are those of docs/images/windows/page-FullBlurPPG.png.
echo "drag Blur by 15 pixels"
xdotool mousemove --window "$window" 213 122 mousedown 1
for ((i = 0; i < 15; ++i)); do
  xdotool mousemove_relative -- 1 0
  sleep 0.02
done
xdotool mouseup 1
echo "click Aspect and type"
xdotool mousemove --window "$window" 213 176 click 1
sleep 0.3
xdotool type --delay 50 -- -20
xdotool key Return
echo "go on to the mix-back list, and two entries down"
xdotool key Tab
sleep 0.2
xdotool key Down
xdotool key Down
echo "go on to Blend, which the list has enabled"
xdotool key Tab
sleep 0.2
xdotool type --delay 50 '30%'
xdotool key Return
xdotool key Up
echo "undo the last step, and close"
xdotool key ctrl+z
sleep 0.5
xdotool key alt+F4

for ((tried = 0; tried < 100; ++tried)); do
  grep -q '^steps=' "$scratch/out" && break
  sleep 0.2
done
expected="Blur=25
Aspect=-20
Mix Back=2
Blend=30
steps=5"
found=$(tr -d '\r' <"$scratch/out" | grep -E '^(Blur|Aspect|Mix Back|Blend|steps)=' || true)
[ "$found" = "$expected" ] || { printf 'expected\n%s\nfound\n%s\n' "$expected" "$found"; exit 1; }
echo "all as expected"
