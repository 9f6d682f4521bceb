#pragma once
// Themes: the program's own ".vxtheme" files (save and load) and the two foreign formats it imports
// (Microsoft Plus! ".theme", Microangelo ".motif"). Each is one walk over the item table: the section
// and key of every entry come from the item's row, so no item key is written twice. Loading and
// importing only change the icon lists, exactly as the user's own edits would; Apply makes it effective.
#include <string>
#include <vector>

#include "icons/Items.h"
#include "system/Environment.h"

namespace vx {

// The icon lists as the themes see them, by tab and item key.
class ThemeLists {
 public:
  virtual ~ThemeLists() = default;
  // The item's location ("file,index"), or "" when the list does not hold the key.
  virtual std::string ItemFullPath(int tab, const std::string& key) const = 0;
  // Gives the item a location (split into file and index by the list). A key that the list does not
  // hold changes nothing and gives false.
  virtual bool Change(int tab, const std::string& key, const std::string& location) = 0;
  virtual void ListRefresh(int tab) = 0;
};

// ThemeLists over the main window's icon list controls.
class ListBoxThemeLists : public ThemeLists {
 public:
  explicit ListBoxThemeLists(const IconLists& lists) : lists_(lists) {}
  std::string ItemFullPath(int tab, const std::string& key) const override;
  bool Change(int tab, const std::string& key, const std::string& location) override;
  void ListRefresh(int tab) override;

 private:
  ui::ListBoxIcons* Holding(int tab, const std::string& key) const;
  IconLists lists_;
};

enum class ThemeFormat { Own, Plus, Motif };

// One value of a theme file and the list item it goes with.
struct ThemeEntry {
  int tab;
  std::string listKey;
  std::string section;
  std::string key;
};

// The entries of a format, in file order. For the own format, `writing` picks the save's conditions
// (else the load's, which read "Hand" on every edition); the imports name the same items everywhere.
std::vector<ThemeEntry> ThemeEntries(ThemeFormat format, const Environment& env, bool writing = false);

// A value a load did not take: the item it was for, and where the file had it.
struct Refusal {
  int tab;
  std::string item;
  std::string section, key, value;
  std::string reason;  // "a network share", "a device name", ...
};

struct LoadReport {
  int changed = 0;               // items given a value
  std::vector<Refusal> refused;  // values that may not reach the system (CheckLocation), or unreadable
};

// The reason of a value with a character the ANSI code page cannot hold.
inline constexpr const char* kForeignText = "a character this Windows cannot show in a file name";

// The credits every saved theme begins with, in order.
struct Credit {
  const char* key;
  std::string value;
};
std::vector<Credit> ThemeCredits();

// Writes the credits, then every item the lists hold a location for, into the file (nothing is removed
// from it first). Returns the number of values written.
int SaveThemeFile(const std::string& file, const Environment& env, const ThemeLists& lists);

// Fills the lists from a theme of the own format; redraws the pointer list at the end.
LoadReport LoadTheme(const std::string& file, const Environment& env, ThemeLists& lists);
// Fills the lists from a Plus! theme or a Motif file; each list is redrawn after its category.
LoadReport ImportPlusTheme(const std::string& file, const Environment& env, ThemeLists& lists);
LoadReport ImportMotif(const std::string& file, const Environment& env, ThemeLists& lists);

}  // namespace vx
