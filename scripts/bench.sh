#!/usr/bin/env bash
# bench.sh [ROUNDS]: builds everything and runs every benchmark (bench/*_bench.exe) under Wine, on a
# private X server in a fresh Wine prefix of its own (benchmarks write the registry for real), and
# prints each one's results. ROUNDS, when given, goes to every benchmark.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
rounds=${1:-}
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
export WINEPREFIX="$build/wine-bench"
"$root/scripts/make-prefix.sh" "$WINEPREFIX"
start_session
trap 'stop_session >/dev/null 2>&1' EXIT
win() { "$WINE_BIN" winepath -w "$1" 2>/dev/null; }
rc=0
for exe in "$build"/bench/*_bench.exe; do
  [ -e "$exe" ] || continue
  name=$(basename "$exe" .exe)
  # A GUI program's stdout may not reach us through Wine, so each also writes its results to a file.
  out="$build/bench/$name.txt"; rm -f "$out"
  # Every benchmark takes [ROUNDS] [RESULT_FILE]; starting programs is slow, so fewer rounds there.
  case "$name" in
    startup_bench) def=7 ;;
    *) def=20 ;;
  esac
  args=("${rounds:-$def}" "$(win "$out")")
  echo "== $name"
  if printed=$("$root/scripts/wine-run.sh" "$exe" "${args[@]}" 2>/dev/null); then
    if [ -s "$out" ]; then cat "$out"; else echo "$printed"; fi
  else
    echo "$name failed"; rc=1
  fi
done
exit $rc
