# Sourced by the other scripts: where Wine lives and which prefix to use.
WINE_BIN=/usr/lib/wine/wine64
[ -x "$WINE_BIN" ] || WINE_BIN=$(command -v wine64 || command -v wine)
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-"mscoree,mshtml="}
