#pragma once
// Icons of single folders and drives (the Explorer tab), written at once rather than on Apply. A
// folder declares its icon in its own desktop.ini, a drive in the autorun.inf of its root.
#include <windows.h>
#include <shellapi.h>

#include <cstdint>
#include <functional>
#include <string>

#include "icons/IconEdits.h"

namespace vx {

inline constexpr const char* kDesktopIni = "\\desktop.ini";
inline constexpr const char* kAutorunInf = "autorun.inf";  // the root path already ends in a backslash

// Whether the info bar shows an icon location ("C:\..."), i.e. the selection has an icon of its own.
bool IsCustomised(const std::string& infoBar);
// A drive root ("C:\") rather than a folder.
bool IsDriveRoot(const std::string& path);

// What the Explorer tab's info bar shows for a folder or drive root: "Windows Default Icon" when the
// shell draws it with its own library, else the icon location. Where the shell names no usable file
// for a folder that declares an icon (some systems report only the index), the declaration itself, the
// folder's desktop.ini or the root's autorun.inf, is read instead.
std::string FolderIconInfo(const std::string& path, const std::string& systemFolder);

// Change and Default Icon on the Explorer tab: the chosen location for the folder tree's selection.
void ExplorerChange(EditHost& host, const std::string& file, int16_t index);
void ExplorerDefault(EditHost& host);

// Makes the shell read a folder and its desktop.ini again: renames the folder through the shell to
// the same path in upper case (lower case when it already is all upper case), then back. Nothing
// changes on disk; file names do not depend on letter case.
void ShellFileRefresh(HWND owner, const std::string& folder);

// The shell's file operation that ShellFileRefresh calls (SHFileOperationA). Tests put a recorder in
// its place, as a rename that only changes the letter case leaves nothing on disk to look at.
using ShellFileOperation = std::function<int(SHFILEOPSTRUCTA&)>;
ShellFileOperation SetShellFileOperation(ShellFileOperation op);  // returns the one it replaces

}  // namespace vx
