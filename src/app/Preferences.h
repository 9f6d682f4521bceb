#pragma once
// The program's own preferences under HKEY_CURRENT_USER\Software\Quenby\Vexillor: window position,
// active tab, current theme and the recently used themes, plus the small path routines they need.
#include <array>
#include <string>

#include "system/Keys.h"

namespace vx {


// The text after the last backslash; a text without one whose second character is ":" loses its
// first two characters; any other text is returned whole.
std::string GetFileName(const std::string& path);
// GetFileName cut before its first ".".
std::string FileTitle(const std::string& path);
// A stored text names a path when its second character is ":" ("Error" from a missing value does not).
bool HoldsPath(const std::string& text);

// What the File menu shows of the recent themes: items 6 (separator) and 7 to 10 (slots "1" to "4").
struct RecentMenu {
  bool separator = false;
  std::array<bool, 4> visible{};
  std::array<std::string, 4> captions{};
};

// The recent-themes routine: with a path, records it as the newest theme (shifting the older slots,
// without looking for duplicates); with "", only reads the slots. Updates menu to match.
void RecentThemes(const std::string& path, RecentMenu& menu);

// The window title for a theme path: "Vexillor", or the file title, " - " and "Vexillor".
std::string ThemeTitle(const std::string& themePath);

// Window position preference ("Top"/"Left" in twips as text). Returns false when the text does not
// convert, leaving the value alone.
bool ParseTwips(const std::string& text, int& twips);
std::string FormatTwips(int twips);

}  // namespace vx
