# Sourced by the other scripts: where Wine lives and which prefix to use.
# Inside "scripts/root32.sh run" (VX_WINE_ROOT set), Wine is the one of that root, which runs 32-bit
# programs: VX_WINE_ARCH win32 (the default) makes 32-bit prefixes, as Windows 95, 98 and NT 4 were;
# win64 makes 64-bit ones, where 32-bit programs run under WOW64 as on 64-bit Windows.
vx_scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ -n "${VX_WINE_ROOT:-}" ]; then
  export VX_WINE_ARCH=${VX_WINE_ARCH:-win32}
  export WINEARCH=$VX_WINE_ARCH
  WINE_BIN=$vx_scripts/in-root.sh
  wineserver() { "$vx_scripts/in-root.sh" --server "$@"; }
else
  WINE_BIN=/usr/lib/wine/wine64
  [ -x "$WINE_BIN" ] || WINE_BIN=$(command -v wine64 || command -v wine)
fi
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-"mscoree,mshtml="}
