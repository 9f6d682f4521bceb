#include "system/Location.h"

#include <string_view>
#include <vector>

#include "registry/modCommon.h"

namespace vx {
namespace {

bool IsSlash(char c) { return c == '\\' || c == '/'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// The value of an environment variable, or nothing when it is not set.
bool Variable(const std::string& name, std::string& value) {
  const DWORD needed = GetEnvironmentVariableA(name.c_str(), nullptr, 0);
  if (needed > 0) {
    std::vector<char> buffer(needed + 1);
    const DWORD got = GetEnvironmentVariableA(name.c_str(), buffer.data(), needed + 1);
    if (got > 0 && got <= needed) {
      value.assign(buffer.data(), got);
      return true;
    }
  }
  if (LowerAscii(name) == "systemroot") {
    char folder[MAX_PATH] = {};
    const UINT n = GetWindowsDirectoryA(folder, MAX_PATH);
    if (n == 0 || n >= MAX_PATH) return false;
    value.assign(folder, n);
    return true;
  }
  return false;
}

// Expands %NAME% the way the system does (an unknown name is kept and the scan goes on at its closing
// percent sign); `unset` tells whether one was not set.
std::string Expand(const std::string& text, bool& unset) {
  std::string out;
  size_t i = 0;
  while (i < text.size()) {
    const size_t open = text.find('%', i);
    if (open == std::string::npos) break;
    const size_t close = text.find('%', open + 1);
    if (close == std::string::npos) break;
    out.append(text, i, open - i);
    const std::string name = text.substr(open + 1, close - open - 1);
    std::string value;
    if (!name.empty() && Variable(name, value)) {
      out += value;
      i = close + 1;
    } else {
      if (!name.empty()) unset = true;
      out.append(text, open, close - open);  // "%NAME", the closing sign may open the next one
      i = close;
    }
  }
  out.append(text, i, std::string::npos);
  return out;
}

std::string WithoutQuotes(const std::string& text) {
  std::string out;
  for (char c : text)
    if (c != '"') out += c;
  return TrimSpaces(out);
}

// A reserved device name: the part before the first dot, without trailing blanks, in any case.
bool IsDeviceName(std::string_view component) {
  std::string base(component.substr(0, component.find('.')));
  while (!base.empty() && (base.back() == ' ' || base.back() == '\t')) base.pop_back();
  base = UpperAscii(base);
  for (const char* name : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"})
    if (base == name) return true;
  if (base.size() == 4 && (base.compare(0, 3, "COM") == 0 || base.compare(0, 3, "LPT") == 0)) {
    const unsigned char n = static_cast<unsigned char>(base[3]);
    // 1 to 9, and the superscript one, two and three that newer Windows also take for a digit.
    return (n >= '1' && n <= '9') || n == 0xB9 || n == 0xB2 || n == 0xB3;
  }
  return false;
}

LocationRisk PathRisk(const std::string& path, DriveTypes& drives) {
  const std::string_view s(path);
  if (s.size() >= 2 && IsSlash(s[0]) && IsSlash(s[1])) {
    const bool raw = s.size() >= 3 && (s[2] == '?' || s[2] == '.') && (s.size() == 3 || IsSlash(s[3]));
    return raw ? LocationRisk::RawPath : LocationRisk::Share;
  }
  if (s.size() >= 3 && IsSlash(s[0]) && s[1] == '?' && s[2] == '?') return LocationRisk::RawPath;
  // Colons: one after a drive letter is the drive; a name of two characters or more before the first
  // one is a scheme; any other is a stream (or a one-letter scheme, just as bad).
  size_t firstColon = s.find(':');
  if (firstColon != std::string_view::npos) {
    const std::string_view before = s.substr(0, firstColon);
    bool slashBefore = false;
    for (char c : before) slashBefore = slashBefore || IsSlash(c);
    if (!slashBefore && before.size() >= 2) return LocationRisk::Address;
    if (!(firstColon == 1 && IsLetter(s[0]))) return LocationRisk::Stream;
    if (s.find(':', 2) != std::string_view::npos) return LocationRisk::Stream;
    if (drives.Of(s[0]) == DRIVE_REMOTE) return LocationRisk::NetworkDrive;
  }
  size_t start = 0;
  for (size_t i = 0; i <= s.size(); ++i) {
    if (i < s.size() && !IsSlash(s[i])) continue;
    if (i > start && IsDeviceName(s.substr(start, i - start))) return LocationRisk::DeviceName;
    start = i + 1;
  }
  return LocationRisk::None;
}

}  // namespace

const char* RiskText(LocationRisk risk) {
  switch (risk) {
    case LocationRisk::None: return "";
    case LocationRisk::Share: return "a network share";
    case LocationRisk::RawPath: return "a device or raw path";
    case LocationRisk::Address: return "an address";
    case LocationRisk::DeviceName: return "a device name";
    case LocationRisk::Stream: return "an alternate data stream";
    case LocationRisk::NetworkDrive: return "a network drive";
    case LocationRisk::UnsetVariable: return "an environment variable that is not set";
  }
  return "";
}

std::string ShellForm(const std::string& location) {
  bool unset = false;
  return WithoutQuotes(Expand(WithoutQuotes(location), unset));
}

UINT DriveTypes::Of(char letter) {
  const int i = (letter | 0x20) - 'a';
  if (i < 0 || i >= 26) return DRIVE_UNKNOWN;
  if (!known_[i]) {
    const char root[] = {static_cast<char>('A' + i), ':', '\\', '\0'};
    types_[i] = GetDriveTypeA(root);
    known_[i] = true;
  }
  return types_[i];
}

LocationRisk CheckLocation(const std::string& location, DriveTypes* shared) {
  DriveTypes own;
  DriveTypes& drives = shared ? *shared : own;
  bool unset = false;
  const std::string quoted = WithoutQuotes(location);
  const std::string expanded = WithoutQuotes(Expand(quoted, unset));
  // Each form on its own: the text as written and as the shell expands it.
  for (const std::string* form : {&quoted, &expanded}) {
    // The icon index after the last comma is no part of the path; the whole text is judged as well,
    // in case a comma is part of a file name.
    const size_t comma = form->rfind(',');
    for (const std::string& path : {*form, comma == std::string::npos ? *form : TrimSpaces(form->substr(0, comma))}) {
      const LocationRisk risk = PathRisk(path, drives);
      if (risk != LocationRisk::None) return risk;
    }
  }
  return unset ? LocationRisk::UnsetVariable : LocationRisk::None;
}

bool SameFile(const std::string& a, const std::string& b) {
  auto full = [](const std::string& path) {
    char buffer[MAX_PATH * 2] = {};
    char* name = nullptr;
    const DWORD n = GetFullPathNameA(path.c_str(), sizeof buffer, buffer, &name);
    return n > 0 && n < sizeof buffer ? std::string(buffer, n) : path;
  };
  if (a.empty() || b.empty()) return a == b;
  return LowerAscii(full(a)) == LowerAscii(full(b));
}

QuietDriveErrors::QuietDriveErrors() : old_(SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX)) {
  SetErrorMode(old_ | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

QuietDriveErrors::~QuietDriveErrors() { SetErrorMode(old_); }

}  // namespace vx
