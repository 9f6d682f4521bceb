#include "themes/ThemeFile.h"

#include <windows.h>

#include "registry/modCommon.h"
#include "system/Location.h"

namespace vx {
namespace {

// The profile read that themes have always used is 127 characters wide: a value keeps 126 of them.
constexpr size_t kValueLimit = 126;
// Beyond this a file is no theme; what is in it is read as far as this.
constexpr DWORD kFileLimit = 1 << 20;

// The location after the folder and the character that follows it, or nothing when the location does
// not begin with the folder. An empty folder (one the environment does not know) never matches.
bool CutFolder(const std::string& location, const std::string& folder, std::string& rest) {
  if (folder.empty() || location.compare(0, folder.size(), folder) != 0) return false;
  rest = location.size() > folder.size() + 1 ? location.substr(folder.size() + 1) : "";
  return true;
}

std::string FileBytes(const std::string& file) {
  HANDLE h = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return "";
  std::string bytes;
  char buffer[16384];
  DWORD got = 0;
  while (bytes.size() < kFileLimit && ReadFile(h, buffer, sizeof buffer, &got, nullptr) && got > 0)
    bytes.append(buffer, got);
  CloseHandle(h);
  if (bytes.size() > kFileLimit) bytes.resize(kFileLimit);
  return bytes;
}

std::wstring Utf16(const std::string& bytes, bool bigEndian) {
  std::wstring out;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const unsigned a = static_cast<unsigned char>(bytes[i]), b = static_cast<unsigned char>(bytes[i + 1]);
    out += static_cast<wchar_t>(bigEndian ? (a << 8 | b) : (b << 8 | a));
  }
  return out;
}

// Strict UTF-8 (no overlong forms, no surrogates); anything else becomes U+FFFD, which no ANSI code
// page holds, so a broken value is refused rather than guessed at. By hand: Windows 95 has no UTF-8.
std::wstring Utf8(const std::string& bytes, bool* valid = nullptr) {
  std::wstring out;
  if (valid) *valid = true;
  for (size_t i = 0; i < bytes.size();) {
    const unsigned c = static_cast<unsigned char>(bytes[i]);
    const int extra = c < 0x80 ? 0 : (c & 0xE0) == 0xC0 ? 1 : (c & 0xF0) == 0xE0 ? 2 : (c & 0xF8) == 0xF0 ? 3 : -1;
    unsigned code = extra == 0 ? c : extra == 1 ? c & 0x1F : extra == 2 ? c & 0x0F : c & 0x07;
    bool ok = extra >= 0 && i + static_cast<size_t>(extra) < bytes.size() + (extra == 0 ? 1 : 0);
    for (int k = 1; ok && k <= extra; ++k) {
      const unsigned d = static_cast<unsigned char>(bytes[i + static_cast<size_t>(k)]);
      ok = (d & 0xC0) == 0x80;
      code = code << 6 | (d & 0x3F);
    }
    static constexpr unsigned kLeast[] = {0, 0x80, 0x800, 0x10000};
    ok = ok && (extra <= 0 || code >= kLeast[extra]) && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    if (!ok) {
      if (valid) *valid = false;
      out += L'\xFFFD';
      ++i;
      continue;
    }
    if (code >= 0x10000) {
      code -= 0x10000;
      out += static_cast<wchar_t>(0xD800 + (code >> 10));
      out += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
    } else {
      out += static_cast<wchar_t>(code);
    }
    i += static_cast<size_t>(extra) + 1;
  }
  return out;
}

// A file without a mark is UTF-8 when it has characters beyond ASCII and every one of them is well
// formed: text in an ANSI code page almost never is.
bool LooksLikeUtf8(const std::string& bytes) {
  bool high = false;
  for (char c : bytes) high = high || static_cast<unsigned char>(c) >= 0x80;
  if (!high) return false;
  bool valid = false;
  Utf8(bytes, &valid);
  return valid;
}

// Text in the ANSI code page. A character the code page cannot hold (or holds only as a look-alike,
// which the round trip shows) marks it foreign.
std::string Ansi(const std::string& text, bool& foreign) {
  (void)foreign;
  return text;
}
std::string Ansi(const std::wstring& text, bool& foreign) {
  if (text.empty()) return "";
  const int length = static_cast<int>(text.size());
  BOOL usedDefault = FALSE;
  const int n = WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, &usedDefault);
  std::string out(static_cast<size_t>(n > 0 ? n : 0), '\0');
  if (n > 0) WideCharToMultiByte(CP_ACP, 0, text.data(), length, out.data(), n, nullptr, &usedDefault);
  std::wstring back(text.size() * 2 + 2, L'\0');
  const int m = n > 0 ? MultiByteToWideChar(CP_ACP, 0, out.data(), n, back.data(), static_cast<int>(back.size())) : 0;
  back.resize(static_cast<size_t>(m > 0 ? m : 0));
  if (n <= 0 || usedDefault || back != text) foreign = true;
  return out;
}

template <class Char>
bool IsBlank(Char c) { return c == ' ' || c == '\t'; }

template <class Text>
Text Trim(const Text& s) {
  size_t a = 0, b = s.size();
  while (a < b && IsBlank(s[a])) ++a;
  while (b > a && IsBlank(s[b - 1])) --b;
  return s.substr(a, b - a);
}

// Walks the lines of a file: "[section]" starts a section, "key=value" is an entry, anything else
// (comments, stray text) is passed over.
template <class Text, class Keep>
void Parse(const Text& all, const Keep& keep) {
  using Char = typename Text::value_type;
  std::string section;
  bool sectionForeign = false;
  size_t start = 0;
  while (start <= all.size()) {
    size_t end = start;
    while (end < all.size() && all[end] != Char('\r') && all[end] != Char('\n')) ++end;
    Text line = Trim(all.substr(start, end - start));
    start = end + 1;
    if (end >= all.size()) start = all.size() + 1;
    // A NUL ends what the profile calls would see of a line.
    for (size_t z = 0; z < line.size(); ++z)
      if (line[z] == Char(0)) line.resize(z);
    if (line.empty() || line[0] == Char(';')) continue;
    if (line[0] == Char('[')) {
      size_t close = 1;
      while (close < line.size() && line[close] != Char(']')) ++close;
      sectionForeign = false;
      section = Ansi(line.substr(1, close - 1), sectionForeign);
      continue;
    }
    size_t eq = 0;
    while (eq < line.size() && line[eq] != Char('=')) ++eq;
    if (eq == line.size() || sectionForeign) continue;
    bool keyForeign = false;
    const std::string key = Ansi(Trim(line.substr(0, eq)), keyForeign);
    if (keyForeign) continue;
    Text value = Trim(line.substr(eq + 1));
    if (value.size() >= 2 && (value[0] == Char('"') || value[0] == Char('\'')) && value.back() == value[0])
      value = value.substr(1, value.size() - 2);
    ThemeValue v;
    v.text = Ansi(value, v.foreign);
    if (v.text.size() > kValueLimit) v.text.resize(kValueLimit);
    keep(section, key, std::move(v));
  }
}

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
  if (SameFile(path, env.exePath)) return false;
  const std::string value = MacroForm(location, FoldersFor(env, file));
  return WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), file.c_str()) != FALSE;
}

std::string ReadThemeEntry(const std::string& section, const std::string& key, const std::string& file,
                           const Environment& env) {
  const ThemeText text = ThemeText::Read(file);
  const ThemeValue* value = text.Find(section, key);
  if (!value || value->text.empty() || value->foreign) return "";
  return ExpandMacros(value->text, FoldersFor(env, file));
}

// --- reading a theme file -------------------------------------------------------------------------------

ThemeText ThemeText::Read(const std::string& file) {
  ThemeText text;
  const std::string bytes = FileBytes(file);
  const auto keep = [&text](std::string section, std::string key, ThemeValue value) {
    text.entries_.push_back({LowerAscii(section), LowerAscii(key), std::move(value)});
  };
  const size_t at = bytes.size() >= 2 ? 2 : 0;
  if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF && static_cast<unsigned char>(bytes[1]) == 0xFE)
    Parse(Utf16(bytes.substr(at), false), keep);
  else if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFE && static_cast<unsigned char>(bytes[1]) == 0xFF)
    Parse(Utf16(bytes.substr(at), true), keep);
  else if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0)
    Parse(Utf8(bytes.substr(3)), keep);
  else if (LooksLikeUtf8(bytes))
    Parse(Utf8(bytes), keep);
  else
    Parse(bytes, keep);
  return text;
}

const ThemeValue* ThemeText::Find(const std::string& section, const std::string& key) const {
  const std::string s = LowerAscii(section), k = LowerAscii(key);
  for (const Entry& e : entries_)
    if (e.section == s && e.key == k) return &e.value;
  return nullptr;
}

}  // namespace vx
