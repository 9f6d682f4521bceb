#!/usr/bin/env bash
# bench.sh [ROUNDS]: builds the shipped 32-bit program and the 64-bit build, runs every benchmark
# (bench/*_bench.exe) of each under Wine on a private X server, in a fresh Wine prefix of its own
# (benchmarks write the registry for real): the 32-bit build in a 32-bit prefix, as on the 32-bit Windows
# it is made for, the 64-bit build in a 64-bit one. Prints each one's results, then one table of every
# figure ("name: 32-bit ratio  64-bit ratio", one a line, in a fixed order; each is a median of
# interleaved rounds against a baseline of the same build in the same run).
# ROUNDS, when given, goes to every benchmark.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
build64=${VX_BUILD64:-$build/x64}
rounds=${1:-}
if [ -z "${VX_WINE_ROOT:-}" ]; then  # Wine is the one of the 32-bit root (scripts/root32.sh)
  mkdir -p "$build"
  VX_ROOT32_BINDS="$root $build" exec "$root/scripts/root32.sh" run "$0" "$@"
fi
"$root/scripts/build.sh" "$build"
VX_ARCH=x64 "$root/scripts/build.sh" "$build64"
. "$root/scripts/xvfb.sh"

rc=0
run_all() {  # run_all BUILD_DIR WINE_ARCH: every benchmark of that build; their output in $all
  local dir=$1 exe name out def printed args
  export VX_WINE_ARCH=$2
  . "$root/scripts/wine-env.sh"
  export WINEPREFIX="$dir/wine-bench"
  "$root/scripts/make-prefix.sh" "$WINEPREFIX"
  # As the tests: Windows 2000, where Apply writes every item; the XP family's figure is measured apart.
  "$WINE_BIN" reg add 'HKCU\Software\Wine' /v Version /d win2k /f >/dev/null 2>&1 || true
  wineserver -w
  start_session
  all=""
  for exe in "$dir"/bench/*_bench.exe; do
    [ -e "$exe" ] || continue
    name=$(basename "$exe" .exe)
    # A GUI program's stdout may not reach us through Wine, so each also writes its results to a file.
    out="$dir/bench/$name.txt"; rm -f "$out"
    # Every benchmark takes [ROUNDS] [RESULT_FILE]; starting programs is slow, so fewer rounds there.
    case "$name" in
      startup_bench) def=9 ;;
      *) def=20 ;;
    esac
    args=("${rounds:-$def}" "$("$WINE_BIN" winepath -w "$out" 2>/dev/null)")
    echo "== $name ($2)"
    if printed=$("$root/scripts/wine-run.sh" "$exe" "${args[@]}" 2>/dev/null); then
      if [ -s "$out" ]; then printed=$(cat "$out"); fi
      printed=$(tr -d '\r' <<<"$printed")  # files written under Wine end their lines in CR LF
      echo "$printed"
      all+="$printed"$'\n'
    else
      echo "$name failed"; rc=1
    fi
  done
  stop_session >/dev/null 2>&1
}
run_all "$build" win32; all32=$all
run_all "$build64" win64; all64=$all

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
figures() { grep -E '^[A-Za-z][^:]*: [0-9]+(\.[0-9]+)?$' <<<"$1" || true; }
fig32=$(figures "$all32") fig64=$(figures "$all64")
while IFS= read -r line; do
  [ -n "$line" ] || continue
  listed=
  for name in "${order[@]}"; do [ "${line%%: *}" = "$name" ] && listed=1; done
  [ -n "$listed" ] || order+=("${line%%: *}")
done <<<"$fig32"$'\n'"$fig64"
figure() {  # figure NAME FIGURES: the ratio, or "missing"
  local line
  while IFS= read -r line; do
    if [ "${line%%: *}" = "$1" ]; then echo "${line#*: }"; return; fi
  done <<<"$2"
  echo missing
}
echo
echo "== every figure ($(date -u '+%Y-%m-%d %H:%M UTC'); $(nproc) cores, $(sed -n 's/^model name\s*: //p' /proc/cpuinfo | head -1); $("$WINE_BIN" --version 2>/dev/null))"
printf '%-40s %8s %8s\n' "" "32-bit" "64-bit"
seen=" "
for name in "${order[@]}"; do
  case "$seen" in *" $name "*) continue ;; esac
  seen+="$name "
  a=$(figure "$name" "$fig32") b=$(figure "$name" "$fig64")
  [ "$a" != missing ] && [ "$b" != missing ] || rc=1
  printf '%-40s %8s %8s\n' "$name:" "$a" "$b"
done
exit $rc
