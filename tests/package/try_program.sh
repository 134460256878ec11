#!/usr/bin/env bash
# try_program.sh BUILD: installs BUILD into a scratch folder, moves that elsewhere, and renders with it.
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$1" --prefix "$scratch/first" >"$scratch/install.log" || { cat "$scratch/install.log"; exit 1; }
mv "$scratch/first" "$scratch/moved"
cd "$scratch"
moved/bin/vblur chart in.png --size 64x36
moved/bin/vblur render in.png out.png --blur 5 -vv
test -s out.png
echo '{"version": 1, "input": {"file": "in.png"}, "output": {"file": "unused.png"}}' >job.json
moved/bin/vblur view job.json view.png
test -s view.png
