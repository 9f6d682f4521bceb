#!/usr/bin/env bash
# root32.sh ensure: makes, once per machine, a minimal Debian root with 32-bit Wine (wine32:i386 beside
# wine64) and prints its path. It lives outside the repository (VX_ROOT32, by default
# /var/cache/vexillor/wine32-bookworm) so every checkout and every run on the machine reuses it.
# root32.sh run COMMAND...: runs COMMAND on this machine in a private mount namespace in which the root
# sees /proc, /dev, /sys, /tmp and the given folders (VX_ROOT32_BINDS, space-separated) at their own
# paths; scripts/wine-env.sh then starts Wine inside the root (VX_WINE_ROOT). The mounts end with COMMAND.
#
# Why a root of its own: a developer's Debian usually has 64-bit libraries from the security updates that
# are newer than any i386 build its mirror offers (or the i386 index does not download at all), so
# wine32:i386 cannot be installed beside them. A minimal bookworm root has one consistent set of both.
# Needs root (debootstrap, chroot, mount), as the rest of the set-up does.
set -euo pipefail
root=${VX_ROOT32:-/var/cache/vexillor/wine32-bookworm}
SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"

ensure() {
  [ -f "$root/.ready" ] && return 0
  $SUDO mkdir -p "$(dirname "$root")"
  # One maker at a time; a second caller waits and then finds the root ready.
  exec 9>"$root.lock"
  flock 9
  if [ -f "$root/.ready" ]; then exec 9>&-; return 0; fi
  command -v debootstrap >/dev/null || {
    $SUDO apt-get update -qq >/dev/null
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends debootstrap >/dev/null
  }
  # The mirror this machine's apt already uses for bookworm.
  local mirror
  mirror=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE)' 'Created-By: Packages' 2>/dev/null |
           awk '$2 == "bookworm" { print $1; exit }')
  mirror=${mirror:-http://deb.debian.org/debian/}
  local work="$root.new"
  $SUDO rm -rf "$work"
  echo "root32: making a minimal Debian root with 32-bit Wine in $root (once per machine)" >&2
  $SUDO debootstrap --variant=minbase bookworm "$work" "$mirror" >"$root.log" 2>&1 ||
    { tail -20 "$root.log" >&2; exit 1; }
  in_work() { $SUDO chroot "$work" /usr/bin/env DEBIAN_FRONTEND=noninteractive "$@"; }
  $SUDO mount -t proc proc "$work/proc"
  trap '$SUDO umount "$work/proc" 2>/dev/null || true' RETURN
  in_work dpkg --add-architecture i386
  in_work apt-get update -qq >>"$root.log" 2>&1
  # Wine without the recommended extras (sound, printing, OpenGL), but with the X extensions it draws
  # with and its fonts, for both architectures: a 32-bit program runs in the i386 half.
  local x="libxcursor1 libxfixes3 libxi6 libxinerama1 libxrandr2 libxrender1 libxcomposite1"
  local xi386; xi386=$(sed 's/\([a-z0-9]*\)/\1:i386/g' <<<"$x")
  in_work apt-get install -y -qq --no-install-recommends wine wine64 wine32:i386 fonts-wine $x $xi386 \
    >>"$root.log" 2>&1 || { tail -20 "$root.log" >&2; exit 1; }
  in_work apt-get clean
  $SUDO umount "$work/proc"
  trap - RETURN
  $SUDO touch "$work/.ready"
  $SUDO rm -rf "$root"
  $SUDO mv "$work" "$root"
  exec 9>&-
}

case "${1:-}" in
  ensure)
    ensure
    echo "$root"
    ;;
  run)
    shift
    ensure
    binds="/tmp ${VX_ROOT32_BINDS:-}"
    # The namespace's mounts are private: nothing is left mounted on the machine afterwards.
    exec $SUDO unshare --mount --propagation private /usr/bin/env VX_WINE_ROOT="$root" bash -c '
      set -e
      root=$1; binds=$2; shift 2
      mount -t proc proc "$root/proc"
      mount --rbind /dev "$root/dev"
      mount --rbind /sys "$root/sys"
      for d in $binds; do
        [ -d "$d" ] || continue
        mkdir -p "$root$d"
        mount --bind "$d" "$root$d"
      done
      exec "$@"' bash "$root" "$binds" "$@"
    ;;
  *)
    echo "usage: root32.sh ensure | run COMMAND..." >&2
    exit 2
    ;;
esac
