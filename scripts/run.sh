#!/usr/bin/env bash
# run.sh [arguments]: builds Vexillor and opens it under Wine. On a machine without a display it
# runs on a private X server instead and saves a screenshot of the window.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
if [ -z "${VX_WINE_ROOT:-}" ]; then  # Wine is the one of the 32-bit root (scripts/root32.sh)
  mkdir -p "$build"
  VX_ROOT32_BINDS="$root $build $HOME" exec "$root/scripts/root32.sh" run "$0" "$@"
fi
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
export WINEPREFIX="$build/wine-run"
if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
  [ -d "$WINEPREFIX" ] || "$root/scripts/make-prefix.sh" "$WINEPREFIX"
  exec "$WINE_BIN" "$build/vexillor.exe" "$@"
fi
. "$root/scripts/xvfb.sh"
[ -d "$WINEPREFIX" ] || "$root/scripts/make-prefix.sh" "$WINEPREFIX" desktop
echo "There is no display here: Vexillor runs on a private X server for a few seconds instead."
start_xvfb
"$WINE_BIN" "$build/vexillor.exe" "$@" >/dev/null 2>&1 &
sleep "${VX_RUN_SECONDS:-6}"
shot="$build/screenshot.png"
import -window root "$shot"
echo "Screenshot of the window: $shot"
wineserver -k 2>/dev/null || true
wineserver -w 2>/dev/null || true
stop_xvfb
