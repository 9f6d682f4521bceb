#!/usr/bin/env bash
# screenshots.sh [OUT_DIR]: opens Vexillor on a private X server once per icon tab, under Wine's
# emulation of Windows 98 and of Windows 95, and saves a screenshot of each (for looking at, not a test).
# screenshots.sh --docs [OUT_DIR]: the README's pictures instead, each cropped to its window, into
# docs/screenshots: main tabs, the icon picker, a What's This? pop-up, the About box and the /? text.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VX_BUILD:-$root/build}
if [ -z "${VX_WINE_ROOT:-}" ]; then  # Wine is the one of the 32-bit root (scripts/root32.sh)
  mkdir -p "$build"
  VX_ROOT32_BINDS="$root $build $HOME" exec "$root/scripts/root32.sh" run "$0" "$@"
fi
docs=
if [ "${1:-}" = --docs ]; then docs=1; shift; fi
out=${1:-$([ -n "$docs" ] && echo "$root/docs/screenshots" || echo "$build/shots")}
"$root/scripts/build.sh" "$build"
. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
export WINEPREFIX="$build/wine-shots"
"$root/scripts/make-prefix.sh" "$WINEPREFIX" desktop
mkdir -p "$out"
start_session
trap 'stop_session >/dev/null 2>&1' EXIT
reg() { "$WINE_BIN" reg "$@" >/dev/null 2>&1; }
restart_wine() { wineserver -k 2>/dev/null || true; wineserver -w 2>/dev/null || true; wineserver -p; }

if [ -z "$docs" ]; then
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
      restart_wine
    done
  done
  echo "Screenshots in $out"
  exit 0
fi

# --- the README's pictures ------------------------------------------------------------------------
# Wine gives every top-level window an X window of its own inside the virtual desktop; xwininfo knows
# where it stands, so each picture is the window alone. Keys go to the desktop's focused window.
desktop=
window_id() { timeout "${2:-15}" xdotool search --sync --onlyvisible --name "$1" 2>/dev/null | tail -1; }
shoot() {  # shoot TITLE_REGEX FILE
  local id geo x y w h
  id=$(window_id "$1") || true
  [ -n "$id" ] || { echo "screenshots: no window \"$1\" for $2" >&2; return 1; }
  sleep 0.7  # let it finish drawing
  geo=$(xwininfo -id "$id")
  x=$(sed -n 's/.*Absolute upper-left X: *//p' <<<"$geo"); y=$(sed -n 's/.*Absolute upper-left Y: *//p' <<<"$geo")
  w=$(sed -n 's/.*Width: *//p' <<<"$geo"); h=$(sed -n 's/.*Height: *//p' <<<"$geo")
  import -window root -crop "${w}x${h}+${x}+${y}" +repage -strip "PNG8:$out/$2"
  echo "$out/$2 (${w}x${h})"
}
keys() { xdotool windowfocus --sync "$desktop" 2>/dev/null || true; for k in "$@"; do xdotool key "$k"; sleep 0.4; done; }
start() {  # start TAB [ARGS...]: the program at a tab, waiting for its window
  reg add 'HKCU\Software\Quenby\Vexillor\Settings' /v 'Active Tab' /t REG_DWORD /d "$1" /f; shift
  reg add 'HKCU\Software\Quenby\Vexillor\Settings' /v Positions /t REG_DWORD /d 0 /f
  "$WINE_BIN" "$build/vexillor.exe" "$@" >/dev/null 2>&1 &
  window_id '^Vexillor$' 30 >/dev/null || true
  desktop=$(xdotool search --name 'Wine desktop$' 2>/dev/null | head -1)
  sleep 1.5
}
reg add 'HKCU\Software\Wine\AppDefaults\vexillor.exe' /v Version /d win98 /f

for shot in 1:tab-shell 3:tab-start 5:tab-drives 8:tab-explorer 9:tab-pointers; do
  start "${shot%%:*}"
  shoot '^Vexillor$' "${shot#*:}.png"
  restart_wine
done

start 3  # Programs is selected: the picker opens on shell32.dll's icons
keys alt+c
shoot '^Change Icon$' picker.png
restart_wine

start 2
keys alt+h a
shoot '^About Vexillor$' about.png
restart_wine

# Review Changes after one edit: Default Icon on the Start tab's first row, then Tools, Review Changes.
start 3
keys alt+d alt+t v
shoot '^Review Changes$' review.png
restart_wine

# What's This? on the Change button: Shift+F1, then a click on the button.
start 2
keys shift+F1
main=$(window_id '^Vexillor$')
eval "$(xwininfo -id "$main" | sed -n 's/.*Absolute upper-left X: *\(.*\)/mx=\1/p; s/.*Absolute upper-left Y: *\(.*\)/my=\1/p')"
xdotool mousemove $((mx + 470)) $((my + 120)) click 1
shoot '^Chooses a new icon' whats-this.png
restart_wine

# The /? text as a window program shows it: with no console and no output to write to, a message box.
reg add 'HKCU\Software\Quenby\Vexillor\Settings' /v Positions /t REG_DWORD /d 0 /f
"$WINE_BIN" "$build/vexillor.exe" /? </dev/null >&- 2>&- &
desktop=$(xdotool search --sync --name 'Wine desktop$' 2>/dev/null | head -1)
shoot '^Vexillor$' usage.png
restart_wine
echo "Pictures in $out"
