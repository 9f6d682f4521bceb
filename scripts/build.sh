#!/usr/bin/env bash
# build.sh [BUILD_DIR]: installs what is missing, then configures and builds everything.
# VX_ARCH=x64 builds the 64-bit program instead of the shipped 32-bit one (for the benchmarks' second
# column and for comparing); a build folder made for the other kind is configured anew.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-${VX_BUILD:-$root/build}}
"$root/scripts/setup.sh"
case "${VX_ARCH:-x86}" in
  x64) toolchain=$root/cmake/mingw-w64-x86_64.cmake ;;
  *) toolchain=$root/cmake/mingw-w64-i686.cmake ;;
esac
if [ -f "$build/CMakeCache.txt" ] && ! grep -qx "CMAKE_TOOLCHAIN_FILE:[A-Z]*=$toolchain" "$build/CMakeCache.txt"; then
  rm -rf "$build/CMakeCache.txt" "$build/CMakeFiles" "$build/build.ninja"
fi
if [ ! -f "$build/build.ninja" ]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$toolchain" >/dev/null
fi
cmake --build "$build" -- --quiet
