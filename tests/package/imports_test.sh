#!/usr/bin/env bash
# imports_test.sh EXE ALLOWED: the shipped program is a 32-bit (i386) Windows program of at most 1 MiB
# once stripped, and every function it imports is listed, with a reason, in ALLOWED. Prints each
# failure; exits non-zero on any.
set -uo pipefail
exe=$1 allowed=$2
objdump=i686-w64-mingw32-objdump strip=i686-w64-mingw32-strip
rc=0
format=$($objdump -f "$exe" | sed -n 's/.*file format //p')
[ "$format" = pei-i386 ] || { echo "not a 32-bit Windows program: $format"; rc=1; }

stripped=$(mktemp)
$strip -o "$stripped" "$exe"
size=$(stat -c %s "$stripped"); rm -f "$stripped"
echo "stripped size: $size bytes"
[ "$size" -le 1048576 ] || { echo "larger than 1 MiB once stripped"; rc=1; }

# "DLL Function" for every import; ordinal-only imports show as "DLL #ordinal".
imports=$($objdump -p "$exe" | awk -F'\t' '
  /DLL Name:/ { split($2, a, ": "); dll = tolower(a[2]); next }
  /^$/ { next }
  dll && NF >= 3 && $2 ~ /^ *[0-9a-f]+$/ { n = split($3, b, " "); print dll, (n >= 2 ? b[n] : "#" b[1]) }' | sort -u)
[ -n "$imports" ] || { echo "no imports found: objdump's output changed?"; rc=1; }
# The list: "dll Function reason...", comments and blank lines skipped; an entry without a reason counts
# as missing.
listed=$(awk '!/^#/ && NF >= 3 { print tolower($1), $2 }' "$allowed" | sort -u)
bare=$(awk '!/^#/ && NF > 0 && NF < 3' "$allowed")
[ -z "$bare" ] || { echo "entries without a reason:"; echo "$bare"; rc=1; }
extra=$(comm -23 <(echo "$imports") <(echo "$listed"))
if [ -n "$extra" ]; then
  echo "imports not in $(basename "$allowed") (each must exist on Windows 95 + IE 4, or be looked up at run time):"
  echo "$extra"
  rc=1
fi
echo "$(echo "$imports" | wc -l) imports checked"
exit $rc
