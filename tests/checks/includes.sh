#!/usr/bin/env bash
# includes.sh CMAKE CHECK FOLDER: CHECK, the script that looks at includes, against a small tree made below FOLDER.
set -euo pipefail
cmake=$1 check=$2 root=$3
rm -rf "$root"
trap 'rm -rf "$root"' EXIT
mkdir -p "$root"/src/image "$root"/host/base "$root"/host/jobs "$root"/loose
printf 'image\nhost/base\nhost/jobs\n' >"$root/rooms.txt"
touch "$root"/{src/image/Pixel.h,host/base/Failure.h,host/jobs/Job.h,loose/Odd.h}

# looks ROOM FOLDER ALLOWED LINE: what the check says of one file with one line.
looks() {
  echo "$4" >"$root/$2/Tried.cpp"
  "$cmake" -DROOM="$1" -DFOLDER="$root/$2" -DALLOWED="$3" -DROOT="$root" -DROOMS="$root/rooms.txt" \
    -DSTAMP="$root/stamp" -P "$check" 2>&1
}
passes() {
  looks "$@" >"$root/said" || { echo "refused: $*"; cat "$root/said"; exit 1; }
}
refuses() {
  local expected=$1
  shift
  if looks "$@" >"$root/said"; then echo "accepted: $*"; exit 1; fi
  grep -qF "$expected" "$root/said" || { echo "expected '$expected' of: $*"; cat "$root/said"; exit 1; }
}

passes host/jobs host/jobs host/base '#include "host/base/Failure.h"'
passes host/jobs host/jobs host/base '#include "../base/Failure.h"'
passes host/jobs host/jobs host/base/Failure.h '#include "host/base/Failure.h"'
passes host/jobs host/jobs '' '#include "Job.h"'
passes host/jobs host/jobs '' '#include <vector>'
passes image src/image '' '#include "image/Pixel.h"'
refuses 'includes host/jobs/Job.h; host/base may include: nothing' host/base host/base '' '#include "host/jobs/Job.h"'
refuses 'includes host/jobs/Job.h; host/base may include: nothing' host/base host/base '' '#include "../jobs/Job.h"'
refuses 'includes host/jobs/Job.h' host/base host/base image '# include <host/jobs/Job.h>'
refuses 'includes image/Pixel.h' host/base host/base host/jobs '#include "src/image/Pixel.h"'
refuses 'includes image/Pixel.h' host/base host/base host/jobs '#include "../../src/image/Pixel.h"'
refuses 'loose is not a room of the house' host/base host/base '' '#include "loose/Odd.h"'
refuses 'OpenImageIO/imageio.h' host/base host/base image '#include <OpenImageIO/imageio.h>'
refuses 'MAY_INCLUDE names pages' image src/image pages '#include <vector>'
