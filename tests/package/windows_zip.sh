#!/usr/bin/env bash
# The zip for Windows, unpacked into a folder with a blank and letters beyond ASCII, and used there:
# windows_zip.sh BUILD_FOLDER WINE VERSION
set -euo pipefail

build=$1 wine=$2 version=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
name=V_Blur-$version-windows-x64

(cd "$build" && cpack -B "$work" >"$work/log" 2>&1) || { cat "$work/log"; exit 1; }
place="$work/für Gäste 画"
mkdir "$place"
unzip -q "$work/$name.zip" -d "$place"
expected="NOTICES.txt
V_Blur.dll
WINDOWS.md
vblur.exe
vblur_sdk_effects.dll
vblur_sdk_viewer.dll"
found=$(cd "$place/$name" && find . -type f -printf '%P\n' | LC_ALL=C sort)
[ "$found" = "$expected" ] || { printf 'the zip holds:\n%s\nexpected:\n%s\n' "$found" "$expected"; exit 1; }

cd "$place/$name"
# Into files: what Wine leaves running keeps pipes open.
run() { "$wine" ./vblur.exe "$@" >"$work/out" 2>"$work/err" || { cat "$work/err"; echo "vblur $*: exit code $?"; exit 1; }; }
run --version
grep -q "$version" "$work/out" || { echo "vblur --version says: $(cat "$work/out")"; exit 1; }
run properties Blur
run chart größer.png --size 96x64
run render größer.png weich.png --blur 9
run info "$(pwd)/größer.png"
[ -s weich.png ] || { echo "weich.png: not written"; exit 1; }
"$wine" regsvr32 /s V_Blur.dll || { echo "regsvr32: exit code $?"; exit 1; }
"$wine" regsvr32 /s /u V_Blur.dll || { echo "regsvr32 /u: exit code $?"; exit 1; }
echo "the zip works"
