#pragma once
// The fixed catalogue of customisable icons: for every entry, its tab, caption, key, where Windows
// stores its current icon, its Windows default and the condition under which it is listed at all.
// The item keys are the program's vocabulary: the lists, Apply and the theme files all use them.
#include <cstdint>
#include <string>
#include <vector>

#include "icons/Items.h"
#include "system/Environment.h"
#include "system/Keys.h"

namespace vx {

// One listed entry, with every condition already resolved for the running environment.
struct IconItem {
  int tab = 0;
  std::string caption;       // shown text (display name for class-keyed desktop items)
  std::string key;           // fixed identifier
  std::string storageKey;    // registry key path holding the current location
  std::string storageValue;  // value name ("" = the key's default value)
  std::string classKey;      // class key of renamable items, every desktop item among them ("" otherwise)
  std::string className;     // document types: the class read from the extension key ("" when it
                             // names none; the row is then listed only for ".bat", shown at its default)
  std::string defaultFile;   // Windows default icon file
  int defaultIndex = 0;      // Windows default icon index (pointers: n, in the program's own exe)
  const ItemRow* row = nullptr;  // its row of the item table

  // The XP family reads two layers: the override that Apply writes and removes (per user, or the
  // shell's machine-wide override key), over the base that Windows itself keeps ("" when the row has
  // none: then the Windows default above is the base).
  std::string overrideKey, overrideValue;
  std::string baseKey, baseValue;
  std::string nameKey;       // the per-user name of a renamable item ("" otherwise)
  bool machineWide = false;  // written only with administrator rights
  bool retired = false;      // this Windows no longer uses it
};

// Every entry listed in this environment, in list order per tab. Reads the registry for the
// conditions (class names of document types, "\ShellFolder" keys) and display names.
std::vector<IconItem> BuildCatalogue(const Environment& env);

// The notes of the XP family's rows: kept for every user, or no longer used by Windows.
inline constexpr const char* kAllUsersMark = "(for all users)";
inline constexpr const char* kAllUsersTip =
    "Windows keeps this icon for every user of this computer: only an administrator can change it.";
inline constexpr const char* kRetiredMark = "(not used by this Windows)";
inline constexpr const char* kRetiredTip =
    "This version of Windows no longer shows this icon: a change is kept in themes but has no effect here.";

// Fills every icon list with its entries and their current icons read from the registry; returns the
// catalogue it used, which the main window keeps for the run (defaults, class keys, class names).
std::vector<IconItem> Add_Icons(const Environment& env, const IconLists& lists);

// The entry with the given key on the given tab, or nullptr.
const IconItem* FindItem(const std::vector<IconItem>& catalogue, int tab, const std::string& key);

// What a row shows: an icon file and index.
struct ShownIcon {
  std::string file;
  int16_t index = 0;
};

// The location a row shows: the stored one when it is usable (a file with icons, an index from 0 to
// the icon count), else the Windows default. Pointers show their stored cursor file with index 0.
ShownIcon CurrentIcon(const IconItem& item, const Environment& env);

// The XP family: what the base layer alone shows (the override taken away), and the item's name as
// the shell shows it now (the per-user name over the class key's).
ShownIcon BaseIcon(const IconItem& item, const Environment& env);
std::string CurrentName(const IconItem& item, const std::string& defaultCaption);

// Windows' own pointer scheme (Vista on): "Windows Default" among the machine's schemes, one entry per
// role in scheme order. The entry of pointer n (1 to 17) as stored (raw) and as the shell reads it
// (expanded); both "" where there is none.
inline constexpr const char* kWindowsSchemeKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Cursors\\Schemes";
inline constexpr const char* kWindowsScheme = "Windows Default";
struct SchemeEntry {
  std::string raw, file;
};
SchemeEntry WindowsPointer(int n);

// "file,index", as the lists give a location.
std::string LocationText(const ShownIcon& shown);

// A stored location as the XP family's shell reads it: environment strings expanded, quotes taken
// off the file, a text without a comma taken as the file with index 0. Negative indexes (resource
// identifiers) stand.
ShownIcon ReadLocation(const std::string& stored);

// The class key's default value, or the default caption when that is missing or empty.
std::string DisplayName(const std::string& defaultCaption, const std::string& classKey);
// The same, the per-user name (nameKey, when given) first.
std::string DisplayName(const std::string& defaultCaption, const std::string& classKey, const std::string& nameKey);

// Number of icons in a file (0 when it is missing or holds none).
int IconCount(const std::string& file);

}  // namespace vx
