#!/bin/bash
# limited_files.sh WINE PROGRAM: runs the tests of full disks where no file may be larger than a few kilobytes, as the
# system under Wine limits it.
set -u
# Writing beyond the limit is an error then, and does not end the program.
trap '' XFSZ
export VBLUR_FILES_ARE_LIMITED=1
# Wine's server writes larger files: it begins before there is a limit, if there is none, and stays for some seconds.
WINEPREFIX=${VBLUR_WINEPREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/vblur-wine} /usr/lib/wine/wineserver64 -p10 </dev/null \
  >/dev/null 2>&1 || true
for kibibytes in 1 5 12 20; do
  (ulimit -f "$kibibytes" && "$1" "$2" '--gtest_filter=*OutputFileOnAFullDisk*') || exit 1
done
