#!/usr/bin/env bash
# try_program.sh PREFIX: renders with a copy of PREFIX.
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp -r "$1" "$scratch/moved"
cd "$scratch"
moved/bin/vblur chart in.png --size 64x36
moved/bin/vblur render in.png out.png --blur 5 -vv
test -s out.png
echo '{"version": 1, "input": {"file": "in.png"}, "output": {"file": "unused.png"}}' >job.json
moved/bin/vblur view job.json view.png
test -s view.png
