#!/usr/bin/env bash
# screenshots.sh [OUT_DIR]: opens Vexillor on a private X server once per icon tab, under Wine's
# emulation of Windows 98 and of Windows 95, and saves a screenshot of each (for looking at, not a test).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
out=${1:-$build/shots}
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
export WINEPREFIX="$build/wine-shots"
"$root/scripts/make-prefix.sh" "$WINEPREFIX" desktop
mkdir -p "$out"
start_session
reg() { "$WINE_BIN" reg "$@" >/dev/null 2>&1; }
for edition in win98 win95; do
  reg add 'HKCU\Software\Wine\AppDefaults\vexillor.exe' /v Version /d "$edition" /f
  for tab in ${VX_TABS:-2 3 4 5 6 7 8 9}; do
    reg add 'HKCU\Software\Quenby\Vexillor\Settings' /v 'Active Tab' /t REG_DWORD /d "$tab" /f
    reg add 'HKCU\Software\Quenby\Vexillor\Settings' /v Positions /t REG_DWORD /d 0 /f
    "$WINE_BIN" "$build/vexillor.exe" >/dev/null 2>&1 &
    pid=$!
    sleep "${VX_SHOT_WAIT:-4}"
    import -window root "$out/$edition-tab$tab.png"
    kill "$pid" 2>/dev/null || true
    wineserver -k 2>/dev/null || true; wineserver -w 2>/dev/null || true
    wineserver -p
  done
done
stop_session
echo "Screenshots in $out"
