#!/usr/bin/env bash
# build.sh [BUILD_DIR]: installs what is missing, then configures and builds everything.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-${VX_BUILD:-$root/build}}
"$root/scripts/setup.sh"
if [ ! -f "$build/build.ninja" ]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
cmake --build "$build" -- --quiet
