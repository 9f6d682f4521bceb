#!/usr/bin/env bash
# install_test.sh BUILD_DIR: the installer end to end under Wine, in a Wine prefix of its own. Installs
# silently and finds the files, the Start-menu shortcut and the uninstall entry; starts the installed
# program and closes it; uninstalls silently and finds nothing of it left, while a file of the user's in
# the program folder and the program's preferences (the user's) stay.
set -uo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "${1:?usage: install_test.sh BUILD_DIR}" && pwd)
fails=0
check() {  # check DESCRIPTION COMMAND...: runs the command, reports and counts a failure
  local what=$1; shift
  if "$@"; then echo "ok: $what"; else echo "FAILED: $what"; fails=$((fails + 1)); fi
}

"$root/scripts/package.sh" --no-build "$build" >/dev/null || { echo "FAILED: package.sh"; exit 1; }
version=$(sed -n 's/^project(Vexillor VERSION \([0-9][0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
setup=$build/dist/vexillor-$version-setup.exe
check "the installer was made" test -s "$setup"
check "the zip was made" test -s "$build/dist/vexillor-$version.zip"

. "$root/scripts/wine-env.sh"
. "$root/scripts/xvfb.sh"
# Wine would otherwise copy the Start-menu shortcut into this machine's own menus.
export WINEDLLOVERRIDES="$WINEDLLOVERRIDES;winemenubuilder.exe=d"
export WINEPREFIX="$build/wine-install"
"$root/scripts/make-prefix.sh" "$WINEPREFIX"
if [ -z "${DISPLAY:-}" ]; then start_xvfb; own_x=1; else own_x=; fi
wineserver -p
finish() { wineserver -k 2>/dev/null; wineserver -w 2>/dev/null; [ -n "$own_x" ] && stop_xvfb; }
trap finish EXIT

c=$WINEPREFIX/drive_c
# A 32-bit installer puts programs into the 32-bit programs folder, which 64-bit Windows names apart.
programs='Program Files'; [ "${VX_WINE_ARCH:-}" = win64 ] && programs='Program Files (x86)'
dir="$c/$programs/Vexillor"
link="$c/ProgramData/Microsoft/Windows/Start Menu/Programs/Vexillor.lnk"
key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Vexillor'
prefs='HKCU\Software\Quenby\Vexillor\Settings'
reg_has() { "$WINE_BIN" reg query "$@" >/dev/null 2>&1; }
reg_value() { "$WINE_BIN" reg query "$1" /v "$2" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$2 *REG_[A-Z_]* *//p"; }
# Every file and folder of drive C but the temporary ones.
tree() { (cd "$c" && find . | grep -viE '^\./(users/[^/]+/(temp|appdata/local/temp)|windows/temp)(/|$)' | sort); }
wait_for() {  # wait_for SECONDS COMMAND...
  local n=$(($1 * 4)); shift
  while [ $n -gt 0 ]; do "$@" && return 0; sleep 0.25; n=$((n - 1)); done
  return 1
}

before=$(tree)
"$WINE_BIN" "$setup" /S
check "the silent install ends well" test $? -eq 0

# The files are those the zip holds, no more, no fewer, and the program is the stripped one.
shipped=$(python3 -c 'import sys, zipfile; print("\n".join(sorted(n.split("/", 1)[1] for n in zipfile.ZipFile(sys.argv[1]).namelist())))' \
          "$build/dist/vexillor-$version.zip")
installed=$(cd "$dir" && find . -type f ! -name uninstall.exe | sed 's|^\./||' | sort)
check "the installed files are the zip's files" test "$shipped" = "$installed"
check "the help's contents page is installed" test -s "$dir/help/index.html"
check "the uninstaller is installed" test -s "$dir/uninstall.exe"
check "the installed program is the stripped one" cmp -s "$dir/vexillor.exe" "$build/dist/stage/vexillor.exe"
check "the Start-menu shortcut exists" test -s "$link"
check "the uninstall entry names the program" test "$(reg_value "$key" DisplayName)" = "Vexillor $version"
check "the uninstall entry starts the uninstaller" \
  test "$(reg_value "$key" UninstallString)" = "\"C:\\$programs\\Vexillor\\uninstall.exe\""
check "the uninstall entry has a silent form" \
  test "$(reg_value "$key" QuietUninstallString)" = "\"C:\\$programs\\Vexillor\\uninstall.exe\" /S"

# The installed program starts, shows its window and closes on request, saving its preferences.
"$WINE_BIN" reg delete 'HKCU\Software\Quenby' /f >/dev/null 2>&1
"$WINE_BIN" "C:\\$programs\\Vexillor\\vexillor.exe" >/dev/null 2>&1 &
started=$!
# Its main window appears (Wine gives it an X window of the same name); taskkill without /f asks the
# program's windows to close and fails while it has none. It is asked again until it has ended, as
# under load the first request can reach it before its main window takes requests.
shown() { xdotool search --onlyvisible --name '^Vexillor$' >/dev/null 2>&1; }
asked=
close_it() {
  "$WINE_BIN" taskkill /im vexillor.exe >/dev/null 2>&1 && asked=1
  sleep 0.5
  ! kill -0 "$started" 2>/dev/null
}
check "the installed program shows its main window" wait_for 30 shown
check "the installed program ends when asked to close" wait_for 30 close_it
check "the close request reached its windows" test -n "$asked"
check "the installed program saved its preferences on closing" reg_has "$prefs" /v "Active Tab"
kill "$started" 2>/dev/null

# A file of the user's in the program folder: the uninstaller must leave it and its folder.
echo "[Software Credits]" >"$dir/Mine.vxtheme"
"$WINE_BIN" "C:\\$programs\\Vexillor\\uninstall.exe" /S
check "the silent uninstall starts" test $? -eq 0
# The uninstaller runs from a copy of itself and returns at once; its last step removes the entry.
gone() { ! reg_has "$key" && [ ! -e "$dir/vexillor.exe" ]; }
check "the uninstall finishes" wait_for 30 gone
check "the uninstall entry is gone" eval '! reg_has "$key"'
check "the Start-menu shortcut is gone" test ! -e "$link"
check "the program and its help are gone" test ! -e "$dir/vexillor.exe" -a ! -e "$dir/help" -a ! -e "$dir/uninstall.exe"
check "the user's file in the program folder stays" test -s "$dir/Mine.vxtheme"
check "the user's preferences stay" reg_has "$prefs" /v "Active Tab"
rm -f "$dir/Mine.vxtheme"; rmdir "$dir"
after=$(tree)
check "nothing else on drive C changed" test "$before" = "$after"
[ "$before" = "$after" ] || diff <(echo "$before") <(echo "$after") | head -20

[ $fails -eq 0 ] && echo "all checks passed" || echo "$fails checks failed"
exit $((fails > 0))
