#!/usr/bin/env bash
# test.sh [ctest arguments]: builds everything and runs every test under Wine on a private X server,
# in a fresh Wine prefix. ctest's summary is the last thing printed; the exit status is ctest's.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
export WINEPREFIX="$build/wine-test"
"$root/scripts/make-prefix.sh" "$WINEPREFIX" desktop
# Programs run as on Windows 2000, the last NT before the per-user family; the tests of that family
# (and of 95, 98 and NT 4) ask for their edition per program.
"$WINE_BIN" reg add 'HKCU\Software\Wine' /v Version /d win2k /f >/dev/null 2>&1 || true
wineserver -w
start_session
set +e
out=$(mktemp)
(cd "$build" && ctest --output-on-failure "$@") >"$out" 2>&1
rc=$?
stop_session >/dev/null 2>&1
cat "$out"; rm -f "$out"
exit $rc
