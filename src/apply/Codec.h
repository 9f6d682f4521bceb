#pragma once
// A small binary form for what Apply keeps on disk or in a step (key trees, plans, journals): numbers
// as four bytes, texts as their length and bytes. Reading is checked: a damaged or hostile text never
// reads past its end, and every read says whether it succeeded.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace vx::codec {

inline void PutNumber(std::string& out, uint32_t n) { out.append(reinterpret_cast<const char*>(&n), sizeof n); }
inline void PutText(std::string& out, std::string_view s) {
  PutNumber(out, static_cast<uint32_t>(s.size()));
  out += s;
}

struct Reader {
  std::string_view text;
  size_t at = 0;

  bool AtEnd() const { return at >= text.size(); }
  bool Tag(char& c) {
    if (AtEnd()) return false;
    c = text[at++];
    return true;
  }
  template <typename T>
  bool Number(T& n) {
    uint32_t v = 0;
    if (text.size() - at < sizeof v) return false;
    std::memcpy(&v, text.data() + at, sizeof v);
    at += sizeof v;
    n = static_cast<T>(v);
    return true;
  }
  bool Text(std::string& s) {
    uint32_t n = 0;
    if (!Number(n) || text.size() - at < n) return false;
    s.assign(text.substr(at, n));
    at += n;
    return true;
  }
};

}  // namespace vx::codec
