#pragma once
// The one table of the icon tabs' items. Each item stands in it once, with everything the program does
// with it: its tab, key and caption, where Windows stores its icon, its Windows default, when it is
// listed, whether it can be renamed or restored, when and in which order Apply writes it, its section,
// key and order in the program's own theme files, and where the Plus! and Motif theme files keep it.
// The catalogue, the edit commands, Apply and the themes all read it.
#include <array>
#include <span>
#include <string>
#include <vector>

#include "system/Environment.h"

namespace ui {
class ListBoxIcons;
}

namespace vx {

// Tabs of the main window, 1-based as the tab strip counts them.
enum TabIndex : int {
  kTabShell = 1,
  kTabDesktop = 2,
  kTabStart = 3,
  kTabFolders = 4,
  kTabDrives = 5,
  kTabOthers = 6,
  kTabSystem = 7,
  kTabExplorer = 8,
  kTabPointers = 9,
};

// The icon lists, indexed by tab (entries 0, 1 and 8 stay null).
using IconLists = std::array<ui::ListBoxIcons*, 10>;

// Where an item's current icon is stored.
enum class Store {
  Class,     // a class key's "\DefaultIcon"
  Override,  // a value of the shell's icon override key, named by the shell32 icon number
  Document,  // the "\DefaultIcon" of the class that an extension key names
  Pointer,   // a value of the cursor scheme key (a cursor file, not an icon location)
};

// The class key of a Store::Class item: one the environment knows, or the row's own class identifier.
enum class ClassOf { None, MyComputer, MyDocuments, Network, Internet, Mail, RecycleBin, DialUp, Fixed };

// The Windows default's file.
enum class DefFile {
  System,       // System folder + "\" + name
  Windows,      // Windows folder + "\" + name
  Paint,        // the edition's program files
  MediaPlayer,
  WordPad,
  Mail,         // edition-dependent file and index
  DialUp,       // edition-dependent file and index
  OwnExe,       // the program's own executable (pointer images)
};

// The Windows default's index: the row's own, or a shell32 number that moves with the shell version.
enum class Num { Fixed, TextDocument, BatchFile, ConfigSettings, UsersProgramGroup, ControlPanel, Printers };

// When something holds: listing, writing by Apply, writing to or reading from a theme.
enum class When {
  Always,
  Never,
  Win98,
  NT,
  DesktopUpdate,
  Win98OrXp,    // Windows 98, or the XP family (which has the Hand pointer too)
  Win10,        // Windows 10 and later (the Pin and Person pointers)
  ShellFolder,  // the class key's "\ShellFolder" default value can be read
  DocClass,     // the extension key names a class
};

// How the shown caption is found.
enum class Caption { Plain, DisplayName, RecycleEmpty, RecycleFull };

// Where the XP family keeps the item for the signed-in user alone. Items without such a store (the
// shell's icon overrides) are kept for every user, which takes administrator rights.
enum class UserStore {
  None,
  ExplorerClass,  // Explorer's per-user copy of the class: "...\Explorer\CLSID\{id}" (icon and name)
  Classes,        // the per-user classes: "HKEY_CURRENT_USER\Software\Classes\<class>\DefaultIcon"
  Cursors,        // the pointer scheme, which is per user on every Windows
};

// Which foreign theme formats bring the item.
enum class Import { None, Plus, PlusAndMotif };

struct ItemRow {
  int tab;
  const char* caption;  // default caption
  const char* key;      // fixed identifier, unique on its tab
  Store store;
  ClassOf cls;
  const char* where;    // class identifier, extension key or cursor value name
  int number;           // override value name (shell32 icon number)
  const char* value;    // value name under a class's "\DefaultIcon"
  DefFile file;
  const char* fileName;
  Num num;
  int index;
  When listed;
  Caption shown;
  bool renamable;       // the shell names it from its class key
  bool restorable = true;  // Default Icon has a default to go back to
  When applied = When::Always;
  int applyPos = -1;    // order among the tab's class icons when it differs from the list's
  const char* themeKey = "";  // the key in the own theme files ("" = the item key; nullptr = none)
  When themeWritten = When::Always;
  When themeRead = When::Always;
  int themePos = -1;    // order in its theme section when it differs from the list's
  Import import = Import::None;
  int importPos = -1;   // order in a Plus! theme's import when it differs from the list's
  UserStore user = UserStore::None;  // the XP family's per-user store
  unsigned retiredFrom = 0;  // NT version (major * 256 + minor) whose shell no longer uses it; 0: all do

  // Modifiers for the rows of the table.
  constexpr ItemRow Renamable() const { ItemRow r = *this; r.renamable = true; return r; }
  constexpr ItemRow NoDefault() const { ItemRow r = *this; r.restorable = false; return r; }
  constexpr ItemRow Applied(When w, int pos = -1) const { ItemRow r = *this; r.applied = w; r.applyPos = pos; return r; }
  constexpr ItemRow Theme(const char* k, When written = When::Always, When read = When::Always, int pos = -1) const {
    ItemRow r = *this;
    r.themeKey = k;
    r.themeWritten = written;
    r.themeRead = read;
    r.themePos = pos;
    return r;
  }
  constexpr ItemRow ThemeWhen(When written, When read) const { return Theme(themeKey, written, read, themePos); }
  constexpr ItemRow ThemePos(int pos) const { return Theme(themeKey, themeWritten, themeRead, pos); }
  constexpr ItemRow PerUser(UserStore u) const { ItemRow r = *this; r.user = u; return r; }
  constexpr ItemRow Retired(unsigned ntVersion) const { ItemRow r = *this; r.retiredFrom = ntVersion; return r; }
  constexpr ItemRow Imported(Import i = Import::Plus, int pos = -1) const {
    ItemRow r = *this;
    r.import = i;
    r.importPos = pos;
    return r;
  }
};

// Every row, in list order per tab. Rows that are never listed exist for Apply alone.
std::span<const ItemRow> ItemTable();

// The row with the key on the tab, or nullptr.
const ItemRow* FindRow(int tab, const std::string& key);

// Whether a condition holds in an environment. ShellFolder and DocClass need the registry; they are
// decided by the catalogue, and count as holding here.
bool Holds(When when, const Environment& env);

// The class key of a Store::Class row in this environment ("" for other rows).
std::string ClassKeyOf(const ItemRow& row, const Environment& env);

// One registry value Apply may write (or delete) for an item. `anyValue`: any value name of the key
// (the named pointer scheme, whose name is the theme's).
struct WriteTarget {
  std::string key;
  std::string value;
  bool anyValue = false;
  bool operator==(const WriteTarget&) const = default;
};

// Every value Apply may write or delete for the row in this environment, in the order it writes them:
// the icon store(s), then the name. `className` is a document type's class (read from its extension).
// On the XP family these are the per-user stores, or the machine-wide ones for rows that have none.
std::vector<WriteTarget> ApplyTargets(const ItemRow& row, const Environment& env, const std::string& className = "");

// The XP family's per-user icon and name keys of a row ("" where it has none; the name key only for
// renamable rows), and whether Windows still uses the row.
std::string UserIconKey(const ItemRow& row, const Environment& env, const std::string& className = "");
std::string UserNameKey(const ItemRow& row, const Environment& env);
bool IsRetired(const ItemRow& row, const Environment& env);
// Kept for every user of the computer: written only with administrator rights (the XP family).
bool IsMachineWide(const ItemRow& row, const Environment& env);

// The key under which the own theme files keep the item.
std::string ThemeKeyOf(const ItemRow& row);

// Keys the program's commands name: where an uncustomised folder or drive starts from, and the Recycle
// Bin pair that shares one name.
inline constexpr const char* kClosedFolderKey = "Closed Folder";
inline constexpr const char* kHardDriveKey = "Hard Drive";
inline constexpr const char* kRecycleEmptyKey = "Recycle Bin (empty)";
inline constexpr const char* kRecycleFullKey = "Recycle Bin (full)";

// The pointer's number n (1 to 15) in scheme order, or 0 for a key that is no pointer.
int PointerNumber(const std::string& key);

// Items that the shell names from their class key, so the user can rename them.
bool IsRenamable(const std::string& key);

// The sections of the own theme format, by tab ("" for tabs without one).
const char* ThemeSection(int tab);

}  // namespace vx
