#!/usr/bin/env bash
# make-prefix.sh DIR [desktop]: a fresh Wine prefix in DIR, copied from a template that is made once.
# With "desktop", programs open inside a 1024x768 virtual desktop (title bars without a window manager).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/wine-env.sh"
mkdir -p "$(dirname "$1")"; dir=$(cd "$(dirname "$1")" && pwd)/$(basename "$1"); mode=${2:-}
template="$(dirname "$dir")/wine-template${VX_WINE_ARCH:+-$VX_WINE_ARCH}"  # one per kind of prefix
if [ ! -f "$template/.ready" ] || [ ! -f "$template/drive_c/windows/Fonts/marlett.ttf" ]; then
  rm -rf "$template"
  WINEPREFIX="$template" "$WINE_BIN" wineboot -i >/dev/null 2>&1 || true
  WINEPREFIX="$template" wineserver -w
  mkdir -p "$template/drive_c/windows/Fonts"
  cp /usr/share/wine/fonts/*.ttf "$template/drive_c/windows/Fonts/" 2>/dev/null || true
  touch "$template/.ready"
fi
# A template made before Wine's fonts were installed gets them now (dialogs need Tahoma and Marlett).
if [ ! -f "$template/drive_c/windows/Fonts/tahoma.ttf" ] && ls /usr/share/wine/fonts/*.ttf >/dev/null 2>&1; then
  mkdir -p "$template/drive_c/windows/Fonts"
  cp /usr/share/wine/fonts/*.ttf "$template/drive_c/windows/Fonts/"
fi
rm -rf "$dir"
cp -a "$template" "$dir"
if [ "$mode" = desktop ]; then
  reg=$(mktemp --suffix=.reg)
  printf 'REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Explorer]\r\n"Desktop"="Default"\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]\r\n"Default"="1024x768"\r\n' >"$reg"
  WINEPREFIX="$dir" "$WINE_BIN" regedit "$(WINEPREFIX="$dir" "$WINE_BIN" winepath -w "$reg" 2>/dev/null)" >/dev/null 2>&1 || true
  WINEPREFIX="$dir" wineserver -w
  rm -f "$reg"
fi
