#!/usr/bin/env bash
# Runs a Windows program under Wine in the project's private prefix (ctest's emulator).
# Wine's background processes inherit stdout/stderr, so the program's output goes to files
# that are printed once it has ended; otherwise ctest would wait for wineserver forever.
here=$(cd "$(dirname "$0")" && pwd)
. "$here/wine-env.sh"
: "${WINEPREFIX:?WINEPREFIX is not set: run the tests through scripts/test.sh}"
export WINEPREFIX
out=$(mktemp) err=$(mktemp)
"$WINE_BIN" "$@" >"$out" 2>"$err" </dev/null
rc=$?
cat "$out"; cat "$err" >&2
rm -f "$out" "$err"
exit $rc
