#include "app/Preferences.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "registry/modRegistry.h"

namespace vx {

std::string GetFileName(const std::string& path) {
  auto slash = path.rfind('\\');
  if (slash != std::string::npos) return path.substr(slash + 1);
  if (path.size() >= 2 && path[1] == ':') return path.substr(2);
  return path;
}

std::string FileTitle(const std::string& path) {
  std::string name = GetFileName(path);
  auto dot = name.find('.');
  return dot == std::string::npos ? name : name.substr(0, dot);
}

bool HoldsPath(const std::string& text) { return text.size() >= 2 && text[1] == ':'; }

void RecentThemes(const std::string& path, RecentMenu& menu) {
  std::array<std::string, 5> slot;  // slot[n] is value "n"; each is read once
  for (int n = 1; n <= 4; ++n) slot[static_cast<size_t>(n)] = modRegistry::GetString(kThemesKey, std::to_string(n));
  auto show = [&menu](int n, const std::string& p) {
    menu.visible[static_cast<size_t>(n - 1)] = true;
    menu.captions[static_cast<size_t>(n - 1)] = GetFileName(p);
  };
  if (!path.empty()) {
    if (path == slot[1]) return;
    // Shift "3" to "4", "2" to "3", "1" to "2"; older entries are never compared with the new path.
    for (int n = 3; n >= 1; --n) {
      const std::string& p = slot[static_cast<size_t>(n)];
      if (HoldsPath(p)) {
        modRegistry::SaveString(kThemesKey, std::to_string(n + 1), p);
        show(n + 1, p);
      }
    }
    modRegistry::SaveString(kThemesKey, "1", path);
    menu.separator = true;
    show(1, path);
    return;
  }
  for (int n = 1; n <= 4; ++n) {
    const std::string& p = slot[static_cast<size_t>(n)];
    if (HoldsPath(p)) {
      show(n, p);
      if (n == 1) menu.separator = true;
    }
  }
}

std::string ThemeTitle(const std::string& themePath) {
  return themePath.empty() ? "Vexillor" : FileTitle(themePath) + " - Vexillor";
}

bool ParseTwips(const std::string& text, int& twips) {
  if (text.empty()) return false;
  const char* begin = text.c_str();
  char* end = nullptr;
  errno = 0;
  float v = std::strtof(begin, &end);
  while (end && *end == ' ') ++end;
  if (end == begin || *end != '\0' || errno == ERANGE || !std::isfinite(v)) return false;
  if (v > 2147483647.0f || v < -2147483648.0f) return false;
  twips = static_cast<int>(std::lround(v));
  return true;
}

std::string FormatTwips(int twips) { return std::to_string(twips); }

}  // namespace vx
