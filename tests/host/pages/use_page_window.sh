#!/usr/bin/env bash
# Operates the window of the pages as a user does, with the mouse and the keys of a screen that nobody sees:
# use_page_window.sh HOST_PAGES_TESTS.exe. Without xdotool it passes over everything, with exit code 77.
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

# The test tells where its controls are: it depends on the font.
at() {
  local place
  place=$(tr -d '\r' <"$scratch/out" | sed -n "s|^$1: ||p")
  [ -n "$place" ] || { cat "$scratch/out"; echo "no place of $1"; exit 1; }
  # shellcheck disable=SC2086
  xdotool mousemove --window "$window" $place
  sleep 0.2
}
click() {
  at "$1"
  xdotool click 1
  sleep 0.4
}
drag() {
  at "$1"
  xdotool mousedown 1
  for ((i = 0; i < $2; ++i)); do
    xdotool mousemove_relative -- 1 0
    sleep 0.02
  done
  xdotool mouseup 1
  sleep 0.2
}
press() {
  for key; do
    xdotool key "$key"
    sleep 0.2
  done
}
# Waits for the system's picker, or until it has gone.
picker() {
  local there
  for ((tried = 0; tried < 100; ++tried)); do
    there=$(xdotool search --onlyvisible --name '^Color$' 2>/dev/null | head -1 || true)
    [ "$1" = opens ] && [ -n "$there" ] && { sleep 0.5; return; }
    [ "$1" = closes ] && [ -z "$there" ] && { sleep 0.5; return; }
    sleep 0.2
  done
  echo "the picker never $1"
  exit 1
}

echo "drag Blur by 15 pixels"
drag FullBlurPPG/Blur 15
echo "click Aspect and type"
click FullBlurPPG/Aspect
xdotool type --delay 50 -- -20
press Return
echo "go on to the mix-back list, and two entries down"
press Tab Down Down
echo "go on to Blend, which the list has enabled"
press Tab
xdotool type --delay 50 '30%'
press Return Up
echo "undo the last step"
press ctrl+z
echo "open the list of methods with the mouse, and choose the second"
click FullBlurPPG/Method
press Down Return
echo "go to the page of cropping"
click "tab crop"
echo "drag Crop Left, and take everything back by the button"
drag crop/Crop\ Left 7
click crop/Reset
echo "tick the box"
click "crop/Display Cropped"
echo "open the picker and leave it; the chip has the focus again, and the space bar opens it once more"
click crop/chip
picker opens
press Escape
picker closes
press space
picker opens
echo "type its red"
xdotool type --delay 50 200
press Return
picker closes
echo "to the next page and back, and close"
press ctrl+Tab ctrl+shift+Tab
sleep 0.5
press alt+F4

for ((tried = 0; tried < 100; ++tried)); do
  grep -q '^steps=' "$scratch/out" && break
  sleep 0.2
done
expected="Method=1
Blur=25
Aspect=-20
Mix Back=2
Blend=30
Display Cropped=1
Crop Left=0
Crop Right=100
Crop Colour R=78.4314
Crop Colour G=0
front=crop
steps=10"
found=$(tr -d '\r' <"$scratch/out" | grep -E '^[A-Za-z ]+=' || true)
[ "$found" = "$expected" ] || { printf 'expected\n%s\nfound\n%s\n' "$expected" "$found"; exit 1; }
echo "all as expected"
