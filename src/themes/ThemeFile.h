#pragma once
// modMacros: one value of a theme file, written and read through the system's profile calls only (the
// program never parses a theme file itself), with the machine's folders written as path macros so that
// a theme moves between machines and Windows folders.
#include <string>

#include "system/Environment.h"

namespace vx {

// The folders a macro can stand for, without trailing backslashes.
struct ThemeFolders {
  std::string system;   // %WinSysDir%
  std::string windows;  // %WinDir%
  std::string theme;    // %ThemeDir%: the folder of the theme file being written or read
  std::string app;      // %AppDir%: the running program's folder
};

// The text up to the last backslash ("" when there is none).
std::string FolderOf(const std::string& path);

ThemeFolders FoldersFor(const Environment& env, const std::string& themeFile);

// A location with its leading folder replaced by the first macro whose rule holds: the system folder,
// the Windows folder, the theme's own folder (files directly in it only), the program's folder. The
// folder tests are plain case-sensitive prefix tests, so a sibling folder whose name begins with the
// folder's name is cut one character too far; that is how theme files have always been written.
std::string MacroForm(const std::string& location, const ThemeFolders& folders);

// A value with a leading macro (any case) replaced by its folder and a backslash. A backslash that
// follows the macro in the file (as in foreign theme files) is absorbed, so both forms name one file.
std::string ExpandMacros(const std::string& value, const ThemeFolders& folders);

// Writes the location in its macro form. An empty location, or one in the program's own executable,
// is not written at all (whatever the file holds under that key stays). False when nothing was written.
bool WriteThemeEntry(const std::string& section, const std::string& key, const std::string& location,
                     const std::string& file, const Environment& env);

// One value with its macro expanded: at most 126 characters (the read is 127 characters wide), ""
// when the key is absent or empty.
std::string ReadThemeEntry(const std::string& section, const std::string& key, const std::string& file,
                           const Environment& env);

// A location that makes Windows leave the machine or reach past the file system: a network share
// ("\\host\share", also "//host/share"), a device or raw path ("\\.\", "\\?\", "\??\"), or an address
// with a scheme ("http:", "file:", ...: anything but a drive letter before a colon). Showing an icon from such a place hands the user's credentials
// to whoever named it, so theme files are never allowed to.
bool IsNetworkOrDevice(const std::string& location);

}  // namespace vx
