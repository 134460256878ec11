#!/usr/bin/env bash
# Builds the libraries that the Windows build needs from Debian's sources, into build/windows-packages: Highway,
# GoogleTest, and the headers of JSON and the command line. Does nothing when they are there.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# What libhwy-dev has on Debian 12: both platforms compile the same kernels.
highway_version=1.0.3-3+deb12u1
installed_highway=$(dpkg-query -W -f='${source:Version}' libhwy-dev 2>/dev/null || true)
[ -z "$installed_highway" ] || [ "$installed_highway" = "$highway_version" ] ||
  echo "packages.sh: Highway is $highway_version for Windows, libhwy-dev here is $installed_highway: other kernels on Linux" >&2
compiler=$(x86_64-w64-mingw32-g++-posix -dumpfullversion)
prefix=$PWD/build/windows-packages
stamp="highway $highway_version, g++ $compiler"
[ "$(cat "$prefix/built" 2>/dev/null)" = "$stamp" ] && exit 0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A list of sources of its own: the machine's need not name any.
get_highway() {
  local apt=(apt-get -qq -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=/dev/null
    -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=root)
  mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
  local place version
  for place in debian:bookworm debian:bookworm-updates debian-security:bookworm-security; do
    echo "deb-src http://deb.debian.org/${place%:*} ${place#*:} main"
  done >"$work/sources.list"
  (cd "$work" && "${apt[@]}" update) || { echo "packages.sh: no list of Debian's sources from deb.debian.org" >&2; exit 1; }
  for version in "$highway_version" $installed_highway; do
    if (cd "$work" && "${apt[@]}" source "highway=$version" >/dev/null 2>&1); then
      [ "$version" = "$highway_version" ] ||
        echo "packages.sh: Debian no longer has Highway $highway_version: building $version, as libhwy-dev here" >&2
      return
    fi
  done
  echo "packages.sh: Debian has no Highway $highway_version: install the newest libhwy-dev, and name its version in" \
    "highway_version of tools/windows/packages.sh" >&2
  exit 1
}

build() {
  local name=$1 source=$2
  shift 2
  cmake -S "$source" -B "$work/$name" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/WindowsToolchain.cmake" -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF "$@" >"$work/log" 2>&1 &&
    cmake --build "$work/$name" >"$work/log" 2>&1 && cmake --install "$work/$name" >"$work/log" 2>&1 ||
    { cat "$work/log" >&2; echo "$name: not built" >&2; exit 1; }
}

rm -rf "$prefix"
mkdir -p "$prefix/include" "$prefix/share/cmake"
get_highway
build highway "$work"/highway-*/ -DBUILD_TESTING=OFF -DHWY_ENABLE_CONTRIB=OFF -DHWY_ENABLE_EXAMPLES=OFF \
  -DHWY_ENABLE_TESTS=OFF
build googletest /usr/src/googletest -DBUILD_GMOCK=OFF
# Headers only: a compiler for Windows must not see the others in /usr/include.
for headers in CLI nlohmann; do
  ln -s "/usr/include/$headers" "$prefix/include/$headers"
done
for package in CLI11 nlohmann_json; do
  cp -r "$(dirname "$(find /usr/share/cmake /usr/lib -name "${package}Config.cmake" -print -quit)")" \
    "$prefix/share/cmake/$package"
done
echo "$stamp" >"$prefix/built"
