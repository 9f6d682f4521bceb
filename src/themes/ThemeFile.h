#pragma once
// modMacros: one value of a theme file, written through the system's profile calls and read by the
// program's own reader (ThemeText, below), with the machine's folders written as path macros so that
// a theme moves between machines and Windows folders.
#include <string>
#include <vector>

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
// when the key is absent, empty or holds a character the ANSI code page cannot hold.
std::string ReadThemeEntry(const std::string& section, const std::string& key, const std::string& file,
                           const Environment& env);

// One value of a theme file as the loaders take it.
struct ThemeValue {
  std::string text;      // in the ANSI code page, at most 126 characters, its macro not yet expanded
  bool foreign = false;  // it held a character the ANSI code page cannot hold (the text is then unusable)
};

// A theme file read whole by the program itself, so that every Windows reads it alike: in the ANSI
// code page, UTF-8 (with or without a byte-order mark) or UTF-16 (with one). The profile calls of
// Windows 95 and 98 know neither Unicode form, and a UTF-8 mark would hide the first section. Lines,
// sections, keys and values follow the profile calls' rules: blanks around them are dropped, names
// match in any case, the first section and key of a name count, a value in quotes loses them.
class ThemeText {
 public:
  static ThemeText Read(const std::string& file);
  // Nothing when the section or key is absent; an empty text when the value is empty.
  const ThemeValue* Find(const std::string& section, const std::string& key) const;

 private:
  struct Entry {
    std::string section, key;  // lower-cased
    ThemeValue value;
  };
  std::vector<Entry> entries_;
};

}  // namespace vx
