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
# A script snaps its pictures beside itself.
"$program" -q view ring.json ring.png --pen ring.pen
"$program" -q view ring.json ring-zoom-half.png --frame 24 --zoom 0.5
"$program" -q view ring.json ring-zoom-3.png --frame 24 --zoom 3 --pan 60,40
"$program" -q view crop.json crop-released.png --page crop --pen crop.pen

mkdir -p "$folder"
mv ring-*.png crop-*.png "$folder"
ls "$folder"/*.png
