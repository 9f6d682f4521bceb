#!/usr/bin/env bash
# package.sh [--no-build] [BUILD_DIR]: builds Vexillor (unless --no-build) and makes, in BUILD_DIR/dist,
# the installer vexillor-VERSION-setup.exe (with Debian's nsis) and the zip vexillor-VERSION.zip for
# people who do not install. Both hold the same files: the program, stripped of its symbols (it keeps
# its resources: version, manifest, icons), and the help folder.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build_first=1
if [ "${1:-}" = --no-build ]; then build_first=; shift; fi
build=${1:-${VX_BUILD:-$root/build}}
if [ -n "$build_first" ]; then "$root/scripts/build.sh" "$build"; else "$root/scripts/setup.sh"; fi
build=$(cd "$build" && pwd)

version=$(sed -n 's/^project(Vexillor VERSION \([0-9][0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
[ -n "$version" ] || { echo "package: no version in CMakeLists.txt" >&2; exit 1; }
major=${version%%.*} minor=${version#*.}
dist=$build/dist stage=$build/dist/stage name=vexillor-$version
rm -rf "$stage"; mkdir -p "$stage/help"

# The shipped build is 32-bit; a developer's 64-bit build packs the same way.
strip=i686-w64-mingw32-strip
i686-w64-mingw32-objdump -f "$build/vexillor.exe" | grep -q 'file format pei-x86-64' && strip=x86_64-w64-mingw32-strip
$strip -o "$stage/vexillor.exe" "$build/vexillor.exe"
# Stripping must leave the resources: a program without its version, manifest or icons is not shipped.
python3 - "$build/vexillor.exe" "$stage/vexillor.exe" <<'PY' || exit 1
import struct, sys
def resource_types(path):
    data = open(path, "rb").read()
    pe = struct.unpack_from("<I", data, 0x3C)[0]
    sections, optional = struct.unpack_from("<H", data, pe + 6)[0], struct.unpack_from("<H", data, pe + 20)[0]
    for i in range(sections):
        at = pe + 24 + optional + 40 * i
        if data[at:at + 8].rstrip(b"\0") == b".rsrc":
            raw = struct.unpack_from("<I", data, at + 20)[0]
            named, ids = struct.unpack_from("<HH", data, raw + 12)
            return {struct.unpack_from("<I", data, raw + 16 + 8 * (named + k))[0] for k in range(ids)}
    return set()
full, stripped = sys.argv[1:]
missing = {3: "icons", 14: "icon groups", 16: "version", 24: "manifest"}.items()
lost = [name for kind, name in missing if kind not in resource_types(stripped)]
if lost:
    sys.exit("package: the stripped program has no " + ", ".join(lost))
import os
if os.path.getsize(stripped) >= os.path.getsize(full):
    sys.exit("package: stripping did not make the program smaller")
PY
cp "$root"/help/* "$stage/help/"

# The installer's file lists, made from what is staged so that the uninstaller deletes exactly that.
files=$dist/files.nsh unfiles=$dist/unfiles.nsh
{
  echo "File \"$stage/vexillor.exe\""
  echo "SetOutPath \"\$INSTDIR\\help\""
  for f in "$stage"/help/*; do echo "File \"$f\""; done
} >"$files"
{
  echo "Delete \"\$INSTDIR\\vexillor.exe\""
  for f in "$stage"/help/*; do echo "Delete \"\$INSTDIR\\help\\$(basename "$f")\""; done
} >"$unfiles"
size_kb=$(( ($(du -sb "$stage" | cut -f1) + 1023) / 1024 ))

rm -f "$dist/$name-setup.exe" "$dist/$name.zip"
makensis -V2 -NOCD \
  -DVERSION="$version" -DVIVERSION="$major.$((10#$minor)).0.0" -DSTAGE="$stage" -DSIZE_KB="$size_kb" \
  -DFILES="$files" -DUNFILES="$unfiles" -DICON="$build/art/program.ico" \
  -DOUTFILE="$dist/$name-setup.exe" "$root/scripts/installer.nsi" >"$dist/makensis.log" \
  || { cat "$dist/makensis.log" >&2; exit 1; }

# The zip: the same files under one folder, stamped with the time of the build.
python3 - "$stage" "$dist/$name.zip" "$name" <<'PY'
import os, sys, zipfile
stage, out, top = sys.argv[1:]
with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as z:
    for folder, dirs, files in os.walk(stage):
        dirs.sort()
        for f in sorted(files):
            path = os.path.join(folder, f)
            z.write(path, top + "/" + os.path.relpath(path, stage).replace(os.sep, "/"))
PY
rm -f "$files" "$unfiles"
echo "$dist/$name-setup.exe"
echo "$dist/$name.zip"
