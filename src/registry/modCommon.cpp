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

std::string HexBytes(std::string_view bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : bytes) {
    if (!out.empty()) out += ' ';
    out += kDigits[c >> 4];
    out += kDigits[c & 15];
  }
  return out;
}

namespace {
// Skips blanks and reads a sign; returns the position of the first digit (or of whatever stands there).
size_t SignedStart(std::string_view s, bool& negative) {
  size_t i = 0;
  while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
  negative = false;
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) negative = s[i++] == '-';
  return i;
}
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
}  // namespace

std::optional<int32_t> ParseInt32(std::string_view s) {
  bool negative = false;
  size_t i = SignedStart(s, negative);
  if (i >= s.size() || !IsDigit(s[i])) return std::nullopt;
  int64_t value = 0;
  for (; i < s.size() && IsDigit(s[i]); ++i) {
    value = value * 10 + (s[i] - '0');
    if (value > 2147483648LL) return std::nullopt;
  }
  if (negative) value = -value;
  if (value > INT32_MAX || value < INT32_MIN) return std::nullopt;
  return static_cast<int32_t>(value);
}

int16_t ParseIconIndex(std::string_view s) {
  bool negative = false;
  uint32_t value = 0;
  for (size_t i = SignedStart(s, negative); i < s.size() && IsDigit(s[i]); ++i)
    value = (value * 10 + static_cast<uint32_t>(s[i] - '0')) & 0xFFFF;
  if (negative) value = (0x10000 - value) & 0xFFFF;
  return static_cast<int16_t>(static_cast<uint16_t>(value));
}
