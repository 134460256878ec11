#!/usr/bin/env bash
# Makes the pictures of the documentation: pictures.sh PROGRAM FOLDER. Jobs and pen scripts lie beside this file.
set -euo pipefail
program=$(realpath "$1")
folder=$(realpath "$2")
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$here"/*.json "$here"/*.pen "$work"
cd "$work"

"$program" -q chart chart.png --size 640x360
# A script writes its pictures beside itself.
"$program" -q view ring.json ring.png --pen ring.pen
"$program" -q view ring.json ring-zoom-half.png --frame 24 --zoom 0.5
"$program" -q view ring.json ring-zoom-3.png --frame 24 --zoom 3 --pan 60,40
"$program" -q view crop.json crop-released.png --page crop --pen crop.pen

# Contact sheets. Panels are no larger than their input, which keeps the files small.
sheet() {
  local kind=$1 size=$2
  shift 2
  "$program" -q chart "chart-$kind.png" --size "$size"
  "$program" -q sheet "chart-$kind.png" "sheet-$kind.png" --of "$kind" "$@"
}
sheet sizes 288x162
sheet channels 288x162
sheet mix-back 192x108 --blur 8
sheet edges 288x162
sheet ramps 96x54 --blur 12 --alpha ignored
"$program" -q kernel kernel.png --blur 20
python3 "$here/highlights.py" "$program" highlights.png

mkdir -p "$folder"
mv ring-*.png crop-*.png sheet-*.png kernel.png highlights.png "$folder"
ls "$folder"/*.png
