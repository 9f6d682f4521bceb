#pragma once
// Functions of later Windows versions, looked up at run time so that the program still starts on
// Windows 95, 98 and NT 4, whose system files lack them. Every lookup of this kind lives here.
#include <windows.h>

#include <string>

namespace later {

// Whether the process may write the machine-wide stores: shell32's IsUserAnAdmin (Windows 2000 on).
// Where it is missing, every user is an administrator, as on Windows 95.
bool IsAdministrator();

// The NT version as major * 256 + minor, from ntdll's RtlGetVersion (Windows 2000 on), which tells the
// truth where GetVersionExA answers by the program's manifest; `reported` where it is missing.
unsigned NtVersion(unsigned reported);

// An indirect string ("@file,-id", as a class's "LocalizedString" holds its name) resolved by shlwapi's
// SHLoadIndirectString (XP on); "" where it cannot be.
std::string IndirectString(const std::string& text);

// Starts the program again with the "runas" verb, which asks for administrator rights (Vista on; on
// XP it offers the Run As box). False when it could not be started or the person declined.
bool RunAsAdministrator(HWND owner, const std::string& exe, const std::string& parameters);

}  // namespace later
