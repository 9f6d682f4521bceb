; Vexillor's installer, built by scripts/package.sh with makensis. It installs the program and its
; help into the program-files folder, adds a Start-menu shortcut and an entry to the list of installed
; programs, and writes an uninstaller that removes exactly those again. Both run silently with /S.
;
; package.sh defines VERSION (2.06), VIVERSION (2.6.0.0), STAGE (the folder holding vexillor.exe and
; help\), FILES and UNFILES (the generated lists of File and Delete lines), ICON and OUTFILE.

; A 32-bit ANSI installer, like the program: NSIS's Unicode installers need Windows NT, and its ANSI
; stub is marked for Windows 4.0 (95 and NT 4).
Unicode false
Target x86-ansi
SetCompressor /SOLID lzma
RequestExecutionLevel admin

!define PRODUCT "Vexillor"
!define UNINSTKEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vexillor"
!define HOMEPAGE "http://www.quenby.example/vexillor"

Name "${PRODUCT} ${VERSION}"
OutFile "${OUTFILE}"
InstallDir "$PROGRAMFILES\${PRODUCT}"
InstallDirRegKey HKLM "${UNINSTKEY}" "InstallLocation"
BrandingText "${PRODUCT} ${VERSION}"

VIProductVersion "${VIVERSION}"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "CompanyName" "Quenby"
VIAddVersionKey "FileDescription" "${PRODUCT} ${VERSION} Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Quenby"

!include "MUI2.nsh"
!include "x64.nsh"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_WELCOMEPAGE_TEXT "This will install ${PRODUCT} ${VERSION}, which customises the icons, pointers and settings of the Windows shell.$\r$\n$\r$\nNothing in Windows changes until you choose new icons or settings in ${PRODUCT} and press Apply.$\r$\n$\r$\nClick Next to continue."
!define MUI_FINISHPAGE_RUN "$INSTDIR\vexillor.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PRODUCT} now"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\help\index.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Show the help"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH

; The customisations belong to Windows, not to the program: say so before they are left behind.
!define MUI_UNCONFIRMPAGE_TEXT_TOP "${PRODUCT}, its help and its shortcut will be removed. The icons, pointers, names and settings you applied stay: to undo them, cancel, use Restore all Settings, Icons and Pointers on ${PRODUCT}'s Tools menu, press OK, then uninstall."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"

; On 64-bit Windows the uninstall entry goes where 64-bit Windows lists programs (the program itself goes
; to the 32-bit programs folder).
Function .onInit
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  SetShellVarContext all
FunctionEnd

Function un.onInit
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  SetShellVarContext all
FunctionEnd

Section "${PRODUCT}"
  SetOutPath "$INSTDIR"
  !include "${FILES}"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\vexillor.exe" "" "$INSTDIR\vexillor.exe" 0 \
      SW_SHOWNORMAL "" "Customise the icons, pointers and settings of the Windows shell"

  WriteRegStr HKLM "${UNINSTKEY}" "DisplayName" "${PRODUCT} ${VERSION}"
  WriteRegStr HKLM "${UNINSTKEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTKEY}" "DisplayIcon" "$INSTDIR\vexillor.exe,0"
  WriteRegStr HKLM "${UNINSTKEY}" "Publisher" "Quenby"
  WriteRegStr HKLM "${UNINSTKEY}" "URLInfoAbout" "${HOMEPAGE}"
  WriteRegStr HKLM "${UNINSTKEY}" "HelpLink" "$INSTDIR\help\index.html"
  WriteRegStr HKLM "${UNINSTKEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTKEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTKEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTKEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTKEY}" "NoRepair" 1
  WriteRegDWORD HKLM "${UNINSTKEY}" "EstimatedSize" ${SIZE_KB}
SectionEnd

; Only what the installer put there: files by name, and the folders only when they are empty, so that
; anything the user keeps in the program folder (a theme, say) survives.
Section "Uninstall"
  !include "${UNFILES}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR\help"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${PRODUCT}.lnk"
  DeleteRegKey HKLM "${UNINSTKEY}"
SectionEnd
