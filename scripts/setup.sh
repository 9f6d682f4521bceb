#!/usr/bin/env bash
# Installs what building, running and testing Vexillor needs on a Debian machine.
# Quiet and quick when everything is already there.
set -euo pipefail

need=()
have() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'; }
# The win32 thread model compilers (see cmake/); debootstrap makes the root with 32-bit Wine that
# scripts/root32.sh keeps (the scripts run Wine there); the host's wine64 only serves a 64-bit build.
for p in mingw-w64 g++-mingw-w64-i686-win32 g++-mingw-w64-x86-64-win32 debootstrap wine wine64 xvfb cmake \
         ninja-build googletest imagemagick x11-utils xdotool fonts-dejavu-core fonts-wine python3 nsis; do
  have "$p" || need+=("$p")
done
[ ${#need[@]} -eq 0 ] && exit 0

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
echo "setup: installing ${need[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq >/dev/null
$SUDO apt-get install -y -qq --no-install-recommends "${need[@]}" >/dev/null
