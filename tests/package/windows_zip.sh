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
README.txt
V_Blur.dll
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
# The text leads to no file that is not there.
for link in $(grep -oE '\]\([^)]*\)|[A-Za-z_/]+\.(md|txt|exe|dll)' README.txt | tr -d '()[]' | sort -u); do
  [ -e "$link" ] || { echo "README.txt leads to $link, which is not in the zip"; exit 1; }
done
# The first commands, one after the other.
count=0
mkdir "$work/first commands"
program=$(pwd)/vblur.exe
while read -r word arguments; do
  cd "$work/first commands"
  [ "$word" = mkdir ] && mkdir "$arguments"
  [ "$word" = vblur ] || continue
  case $arguments in *--window*) continue ;; esac
  # Quotes as the command prompt takes them, and no patterns.
  set -f
  eval "run_quoted=(${arguments//\\/\\\\})"
  set +f
  "$wine" "$program" "${run_quoted[@]}" >"$work/out" 2>"$work/err" </dev/null ||
    { cat "$work/err"; echo "vblur $arguments: exit code $?"; exit 1; }
  count=$((count + 1))
done < <(tr -d '\r' <"$place/$name/README.txt" | grep '^    ')
[ "$count" -ge 10 ] || { echo "README.txt: $count commands, expected 10 or more"; exit 1; }
for file in several/photo.jpg several/plate.0008.png growing.0008.tif soft.0003.png; do
  [ -s "$work/first commands/$file" ] || { echo "README.txt: its commands have not written $file"; exit 1; }
done
cd "$place/$name"
[ -s weich.png ] || { echo "weich.png: not written"; exit 1; }
# Its first class, where hosts look it up.
class='HKCR\CLSID\{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}\InprocServer32'
is_registered() { "$wine" reg query "$class" /ve >"$work/out" 2>"$work/err" </dev/null; }
"$wine" regsvr32 /s V_Blur.dll || { echo "regsvr32: exit code $?"; exit 1; }
is_registered || { echo "$class is not there after regsvr32"; exit 1; }
grep -q 'V_Blur\.dll' "$work/out" || { echo "$class names another server: $(cat "$work/out")"; exit 1; }
"$wine" regsvr32 /s /u V_Blur.dll || { echo "regsvr32 /u: exit code $?"; exit 1; }
is_registered && { echo "$class is still there after regsvr32 /u"; exit 1; }
echo "the zip works"
