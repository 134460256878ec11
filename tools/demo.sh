#!/usr/bin/env bash
# demo.sh VBLUR FOLDER: draws the test chart and renders it in the most common ways. Replaces the pictures of an
# earlier demo.
set -euo pipefail
vblur=$1 folder=$2
mkdir -p "$folder"

"$vblur" chart "$folder/chart.png" --size 1280x720 --overwrite -q
render() {
  local name=$1
  shift
  "$vblur" render "$folder/chart.png" "$folder/$name.png" --overwrite -q "$@"
  printf '  %-28s vblur render chart.png %s.png %s\n' "$folder/$name.png" "$name" "$*"
}
echo "The test chart, $folder/chart.png, rendered:"
render blur --blur 24
render blur-sub-pixel --blur 1.25
render blur-horizontal --blur 60 --aspect 100
render sharpen --blur 6 --method Sharpen
render chroma --blur 40 --channels Chroma
render luminance --blur 24 --channels Luminance
render wrap --blur 60 --x-edge-method Wrap --y-edge-method Wrap
render region --blur 24 --roi 400,150,500,400

"$vblur" chart "$folder/chart.####.png" --size 640x360 --frames 1-24 --overwrite -q
"$vblur" render "$folder/chart.####.png" "$folder/animated.####.png" --frames 1-24 --blur 0:0,23:60 --overwrite -q \
  --save-job "$folder/animated.json"
echo "  $folder/animated.0001.png to .0024.png: a blur that grows from 0 to 60, and $folder/animated.json, its job"

echo "Sheets of what the effect can do, made by the effect:"
for kind in channels mix-back edges sizes ramps; do
  "$vblur" sheet "$folder/chart.png" "$folder/sheet-$kind.png" --of "$kind" --overwrite -q
  echo "  $folder/sheet-$kind.png"
done
"$vblur" kernel "$folder/kernel.png" --blur 20 --overwrite -q
echo "  $folder/kernel.png: the impulse response beside the Gaussian of the same variance"
