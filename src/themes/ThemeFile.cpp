#include "themes/ThemeFile.h"

#include <windows.h>

#include "registry/modCommon.h"

namespace vx {
namespace {

constexpr DWORD kReadBuffer = 128, kReadSize = 127;

// The location after the folder and the character that follows it, or nothing when the location does
// not begin with the folder. An empty folder (one the environment does not know) never matches.
bool CutFolder(const std::string& location, const std::string& folder, std::string& rest) {
  if (folder.empty() || location.compare(0, folder.size(), folder) != 0) return false;
  rest = location.size() > folder.size() + 1 ? location.substr(folder.size() + 1) : "";
  return true;
}

bool IsSlash(char c) { return c == '\\' || c == '/'; }

}  // namespace

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('\\');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

ThemeFolders FoldersFor(const Environment& env, const std::string& themeFile) {
  return {env.systemFolder, env.windowsFolder, FolderOf(themeFile), FolderOf(env.exePath)};
}

std::string MacroForm(const std::string& location, const ThemeFolders& f) {
  std::string rest;
  if (CutFolder(location, f.system, rest)) return "%WinSysDir%" + rest;
  if (CutFolder(location, f.windows, rest)) return "%WinDir%" + rest;
  const std::string folder = FolderOf(location);
  if (!f.theme.empty() && folder == f.theme) return "%ThemeDir%" + location.substr(folder.size() + 1);
  if (CutFolder(location, f.app, rest)) return "%AppDir%" + rest;
  return location;
}

std::string ExpandMacros(const std::string& value, const ThemeFolders& f) {
  const std::string head = LowerAscii(std::string_view(value).substr(0, 11));
  const struct {
    const char* macro;
    const std::string& folder;
  } macros[] = {{"%themedir%", f.theme}, {"%winsysdir%", f.system}, {"%windir%", f.windows}, {"%appdir%", f.app}};
  for (const auto& m : macros) {
    const std::string_view name(m.macro);
    if (head.compare(0, name.size(), name) != 0) continue;
    size_t from = name.size();
    if (from < value.size() && value[from] == '\\') ++from;
    return m.folder + "\\" + value.substr(from);
  }
  return value;
}

bool WriteThemeEntry(const std::string& section, const std::string& key, const std::string& location,
                     const std::string& file, const Environment& env) {
  if (location.empty()) return false;
  const size_t comma = location.rfind(',');
  const std::string path = comma == std::string::npos ? location : location.substr(0, comma);
  if (LowerAscii(path) == LowerAscii(env.exePath)) return false;
  const std::string value = MacroForm(location, FoldersFor(env, file));
  return WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), file.c_str()) != FALSE;
}

std::string ReadThemeEntry(const std::string& section, const std::string& key, const std::string& file,
                           const Environment& env) {
  char buffer[kReadBuffer] = {};
  const DWORD length = GetPrivateProfileStringA(section.c_str(), key.c_str(), "", buffer, kReadSize, file.c_str());
  if (length < 1) return "";
  // The call never returns more than the size less one; the cap only guards the buffer.
  return ExpandMacros(std::string(buffer, length < kReadSize ? length : kReadSize - 1), FoldersFor(env, file));
}

bool IsNetworkOrDevice(const std::string& location) {
  size_t i = 0;
  while (i < location.size() && (location[i] == ' ' || location[i] == '\t')) ++i;
  const std::string_view s = std::string_view(location).substr(i);
  // Two slashes: a share, or the device and raw-path prefixes. Then the NT object prefix.
  if (s.size() >= 2 && IsSlash(s[0]) && IsSlash(s[1])) return true;
  if (s.size() >= 4 && IsSlash(s[0]) && s[1] == '?' && s[2] == '?' && IsSlash(s[3])) return true;
  // A scheme before a colon ("http:", "file:", or any other name the shell might take for one): more
  // than one character before the first colon, with no slash among them. One letter is a drive.
  size_t n = 0;
  while (n < s.size() && s[n] != ':' && !IsSlash(s[n])) ++n;
  return n >= 2 && n < s.size() && s[n] == ':';
}

}  // namespace vx
