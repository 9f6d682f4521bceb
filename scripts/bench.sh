#!/usr/bin/env bash
# bench.sh [arguments]: builds everything and runs every benchmark in bench/ under Wine, on a private
# X server in a fresh Wine prefix of its own (benchmarks write the registry for real). The arguments
# go to every benchmark (apply_bench takes a round count). Prints each benchmark's results.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
export WINEPREFIX="$build/wine-bench"
"$root/scripts/make-prefix.sh" "$WINEPREFIX"
start_xvfb
wineserver -p
cleanup() {
  wineserver -k 2>/dev/null || true
  wineserver -w 2>/dev/null || true
  stop_xvfb
}
trap 'cleanup >/dev/null 2>&1' EXIT
rc=0
for exe in "$build"/bench/*_bench.exe; do
  [ -e "$exe" ] || continue
  name=$(basename "$exe" .exe)
  # A GUI program's stdout may not reach us through Wine: each benchmark also writes its results to a
  # file named as its last argument.
  out="$build/bench/$name.txt"; rm -f "$out"
  win_out=$("$WINE_BIN" winepath -w "$out" 2>/dev/null)
  echo "== $name"
  if "$root/scripts/wine-run.sh" "$exe" "${@:-20}" "$win_out" >/dev/null; then
    cat "$out" 2>/dev/null || { echo "$name wrote no results"; rc=1; }
  else
    echo "$name failed"; rc=1
  fi
done
exit $rc
