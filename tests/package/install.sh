#!/usr/bin/env bash
# install.sh BUILD PREFIX: installs BUILD, with its programs, into an empty PREFIX.
set -euo pipefail
rm -rf "$2"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --install "$1" --prefix "$2" >"$log" || { cat "$log"; exit 1; }
for document in man/man1/vblur.1 bash-completion/completions/vblur zsh/site-functions/_vblur \
    fish/vendor_completions.d/vblur.fish; do
  [ -s "$2/share/$document" ] || { echo "$document is not installed"; exit 1; }
done
