#!/usr/bin/env bash
# Tests with windows run on a screen of their own, never on a user's: with_screen.sh TOOLS/WINDOWS. Without Xvfb it
# passes over everything, with exit code 77.
set -euo pipefail

run=$1/with-screen
command -v Xvfb >/dev/null || { echo "Xvfb is missing"; exit 77; }
fail() {
  echo "with_screen: $*" >&2
  exit 1
}

# A user's screen, which is none; it must not be asked.
export DISPLAY=:vblur-users VBLUR_SCREEN=''
# shellcheck disable=SC2016
own=$("$run" sh -c 'echo "$DISPLAY"')
case $own in
  :[0-9]*) ;;
  *) fail "expected a screen of its own, found '$own'" ;;
esac

# Inside of a command it is the command's.
# shellcheck disable=SC2016
both=$("$run" sh -c 'echo "$DISPLAY"; "$1" sh -c '"'"'echo "$DISPLAY"'"'"'' sh "$run")
[ "$(echo "$both" | sort -u | wc -l)" = 1 ] || fail "expected one screen, found: $both"

# A user's again, though a command's has been named.
# shellcheck disable=SC2016
own=$("$run" env DISPLAY=:vblur-users "$run" sh -c 'echo "$DISPLAY"')
[ "$own" != :vblur-users ] || fail "expected a screen of its own, found the user's"

status=0
"$run" sh -c 'exit 3' || status=$?
[ "$status" = 3 ] || fail "expected the command's exit code 3, found $status"
