#!/bin/sh
# in-root.sh [--server] ARGS...: Wine (with --server, its wineserver) from the 32-bit root of
# scripts/root32.sh, in the caller's folder and environment. Only inside "root32.sh run" (VX_WINE_ROOT).
: "${VX_WINE_ROOT:?in-root.sh runs only inside scripts/root32.sh run}"
if [ "$1" = --server ]; then
  shift
  set -- /usr/lib/wine/wineserver64 "$@"
elif [ "${WINEARCH:-win32}" = win64 ]; then
  set -- /usr/lib/wine/wine64 "$@"   # 32-bit programs in this prefix run under WOW64
else
  set -- /usr/lib/wine/wine "$@"
fi
exec chroot "$VX_WINE_ROOT" /bin/sh -c 'cd "$0" 2>/dev/null || cd /; exec "$@"' "$(pwd)" "$@"
