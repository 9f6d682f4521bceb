#include "registry/modCommon.h"

std::string StripNull(std::string_view s) {
  auto nul = s.find('\0');
  return std::string(nul == std::string_view::npos ? s : s.substr(0, nul));
}

std::string TrimSpaces(std::string_view s) {
  auto first = s.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  auto last = s.find_last_not_of(' ');
  return std::string(s.substr(first, last - first + 1));
}

std::string LowerAscii(std::string_view s) {
  std::string r(s);
  for (char& c : r)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return r;
}

std::string UpperAscii(std::string_view s) {
  std::string r(s);
  for (char& c : r)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return r;
}
