#!/usr/bin/env bash
# bench.sh [ROUNDS]: builds everything and runs every benchmark (bench/*_bench.exe) under Wine, on a
# private X server in a fresh Wine prefix of its own (benchmarks write the registry for real), and
# prints each one's results, then one table of every figure ("name: ratio", one a line, in a fixed
# order; each is a median of interleaved rounds against a baseline of the same run).
# ROUNDS, when given, goes to every benchmark.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
rounds=${1:-}
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
export WINEPREFIX="$build/wine-bench"
"$root/scripts/make-prefix.sh" "$WINEPREFIX"
# As the tests: Windows 2000, where Apply writes every item; the XP family's figure is measured apart.
"$WINE_BIN" reg add 'HKCU\Software\Wine' /v Version /d win2k /f >/dev/null 2>&1 || true
wineserver -w
start_session
trap 'stop_session >/dev/null 2>&1' EXIT
win() { "$WINE_BIN" winepath -w "$1" 2>/dev/null; }
rc=0
all=""
for exe in "$build"/bench/*_bench.exe; do
  [ -e "$exe" ] || continue
  name=$(basename "$exe" .exe)
  # A GUI program's stdout may not reach us through Wine, so each also writes its results to a file.
  out="$build/bench/$name.txt"; rm -f "$out"
  # Every benchmark takes [ROUNDS] [RESULT_FILE]; starting programs is slow, so fewer rounds there.
  case "$name" in
    startup_bench) def=9 ;;
    *) def=20 ;;
  esac
  args=("${rounds:-$def}" "$(win "$out")")
  echo "== $name"
  if printed=$("$root/scripts/wine-run.sh" "$exe" "${args[@]}" 2>/dev/null); then
    if [ -s "$out" ]; then printed=$(cat "$out"); fi
    printed=$(tr -d '\r' <<<"$printed")  # files written under Wine end their lines in CR LF
    echo "$printed"
    all+="$printed"$'\n'
  else
    echo "$name failed"; rc=1
  fi
done
# The table: the figures in this order, then any a benchmark printed that is not listed here yet.
order=(
  "start-up / fair baseline"
  "start-up / bare window"
  "picker 1000/32"
  "picker 184/32"
  "settings tree fill / bare reads"
  "apply with settings / bare writes"
  "icon apply / bare writes"
  "apply with undo record / bare writes"
  "apply with journal / bare writes"
  "per-user apply, one change / bare writes"
  "theme load / bare reads"
)
figures=$(grep -E '^[A-Za-z][^:]*: [0-9]+(\.[0-9]+)?$' <<<"$all" || true)
echo
echo "== every figure ($(date -u '+%Y-%m-%d %H:%M UTC'); $(nproc) cores, $(sed -n 's/^model name\s*: //p' /proc/cpuinfo | head -1); $("$WINE_BIN" --version 2>/dev/null))"
for name in "${order[@]}"; do
  found=
  while IFS= read -r line; do
    if [ "${line%%: *}" = "$name" ]; then found=$line; break; fi
  done <<<"$figures"
  if [ -n "$found" ]; then echo "$found"; else echo "$name: missing"; rc=1; fi
done
while IFS= read -r line; do
  [ -n "$line" ] || continue
  listed=
  for name in "${order[@]}"; do [ "${line%%: *}" = "$name" ] && listed=1; done
  [ -n "$listed" ] || echo "$line"
done <<<"$figures"
exit $rc
