#!/usr/bin/env bash
# test.sh [ctest arguments]: builds everything and runs every test under Wine on a private X server,
# twice: in a 32-bit prefix (as Windows 95, 98 and NT 4 were; the edition tests emulate each of them)
# and in a 64-bit prefix as Windows 10, where the 32-bit program runs under WOW64. Wine is the one of a
# minimal Debian root made once per machine (scripts/root32.sh). Each pass starts from a fresh prefix.
# ctest's two summaries come last; the exit status is non-zero when either pass failed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
mkdir -p "$build"; build=$(cd "$build" && pwd)
"$root/scripts/setup.sh"
if [ -z "${VX_WINE_ROOT:-}" ]; then
  VX_ROOT32_BINDS="$root $build" VX_BUILD="$build" exec "$root/scripts/root32.sh" run "$0" "$@"
fi
"$root/scripts/build.sh" "$build"
. "$root/scripts/xvfb.sh"

pass() {  # pass ARCH LABEL [ctest arguments]: one run of the suite in a prefix of that kind
  local arch=$1 label=$2; shift 2
  export VX_WINE_ARCH=$arch
  . "$root/scripts/wine-env.sh"
  export WINEPREFIX="$build/wine-test-$arch"
  "$root/scripts/make-prefix.sh" "$WINEPREFIX" desktop
  # Programs run as on Windows 2000, the last NT before the per-user family; the tests of that family
  # (and of 95, 98, NT 4 and 10) ask for their edition per program.
  "$WINE_BIN" reg add 'HKCU\Software\Wine' /v Version /d win2k /f >/dev/null 2>&1 || true
  wineserver -w
  start_session
  echo "== $label"
  (cd "$build" && ctest --output-on-failure "$@") 2>&1
  local rc=$?
  stop_session >/dev/null 2>&1
  return $rc
}

set +e
out32=$(mktemp) out64=$(mktemp)
pass win32 "32-bit Windows (the edition tests as 95, 98 and NT 4)" "$@" >"$out32"; rc32=$?
pass win64 "64-bit Windows (the program under WOW64; the WOW64 and per-user tests as Windows 10)" "$@" >"$out64"; rc64=$?
cat "$out32" "$out64"; rm -f "$out32" "$out64"
[ $rc32 -eq 0 ] && [ $rc64 -eq 0 ]
