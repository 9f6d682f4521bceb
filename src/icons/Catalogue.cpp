#include "icons/Catalogue.h"

#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <iterator>

#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "ui/ListBoxIcons.h"

namespace vx {
namespace {

// Where an entry's current icon is stored.
enum class Store {
  Class,     // a class key's "\DefaultIcon"
  Override,  // a value of the shell's icon override key, named by the shell32 icon number
  Document,  // the "\DefaultIcon" of the class that an extension key names
  Pointer,   // a value of the cursor scheme key (a cursor file, not an icon location)
};

// The class key of a Store::Class entry: one the environment knows, or a fixed CLSID in the row.
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

enum class When { Always, Win98, NT, DesktopUpdate, ShellFolder, DocClass };

// How the shown caption is found.
enum class Caption { Plain, DisplayName, RecycleEmpty, RecycleFull };

struct Row {
  int tab;
  const char* caption;
  const char* key;
  Store store;
  ClassOf cls;
  const char* where;  // fixed CLSID, extension key or cursor value name
  int number;         // override value name (shell32 icon number)
  const char* value;  // value name under a class's "\DefaultIcon"
  DefFile file;
  const char* fileName;
  Num num;
  int index;
  When when;
  Caption shown;
};

constexpr Row Desk(const char* caption, ClassOf cls, const char* where, DefFile file, const char* name,
                   int index, When when = When::Always) {
  return {kTabDesktop, caption, caption, Store::Class, cls, where, 0, "", file, name, Num::Fixed, index, when,
          Caption::DisplayName};
}
constexpr Row Bin(const char* key, const char* value, int index, Caption shown) {
  return {kTabDesktop, key, key, Store::Class, ClassOf::RecycleBin, "", 0, value, DefFile::System, "shell32.dll",
          Num::Fixed, index, When::Always, shown};
}
// A shell icon override whose default is the same number in shell32.dll.
constexpr Row Ovr(int tab, const char* caption, const char* key, int number, When when = When::Always,
                  Num num = Num::Fixed) {
  return {tab, caption, key, Store::Override, ClassOf::None, "", number, "", DefFile::System, "shell32.dll", num,
          number, when, Caption::Plain};
}
constexpr Row Cls(int tab, const char* caption, ClassOf cls, const char* clsid, DefFile file, const char* name,
                  Num num, int index, When when) {
  return {tab, caption, caption, Store::Class, cls, clsid, 0, "", file, name, num, index, when, Caption::Plain};
}
constexpr Row Doc(const char* caption, const char* ext, DefFile file, const char* name, Num num, int index,
                  When when = When::DocClass) {
  return {kTabSystem, caption, caption, Store::Document, ClassOf::None, ext, 0, "", file, name, num, index, when,
          Caption::Plain};
}
constexpr Row Ptr(const char* caption, const char* role, int n, When when = When::Always) {
  return {kTabPointers, caption, caption, Store::Pointer, ClassOf::None, role, 0, "", DefFile::OwnExe, "",
          Num::Fixed, n, when, Caption::Plain};
}

using enum DefFile;
using enum When;
constexpr auto kNoNum = Num::Fixed;

// The catalogue, in list order per tab.
constexpr Row kRows[] = {
    // Desktop
    Desk("My Computer", ClassOf::MyComputer, "", Windows, "explorer.exe", 0),
    Desk("My Documents", ClassOf::MyDocuments, "", System, "mydocs.dll", 0, Win98),
    Desk("Network Neighborhood", ClassOf::Network, "", System, "shell32.dll", 17),
    Desk("The Internet", ClassOf::Internet, "", System, "mshtml.dll", 0),
    Desk("In Box", ClassOf::Mail, "", Mail, "", 0),
    Desk("My Briefcase", ClassOf::Fixed, "{85BBD920-42A0-1069-A2E4-08002B30309D}", System, "syncui.dll", 0),
    Bin("Recycle Bin (empty)", "Empty", 31, Caption::RecycleEmpty),
    Bin("Recycle Bin (full)", "Full", 32, Caption::RecycleFull),
    // Start
    Ovr(kTabStart, "Programs", "Programs", 19),
    Ovr(kTabStart, "Favorites", "Favorites", 43, DesktopUpdate),
    Ovr(kTabStart, "Documents", "Documents", 20),
    Ovr(kTabStart, "Settings", "Settings", 21),
    Ovr(kTabStart, "Find", "Find", 22),
    Ovr(kTabStart, "Help", "Help", 23),
    Ovr(kTabStart, "Run...", "Run...", 24),
    Ovr(kTabStart, "Log Off...", "Log Off...", 44, DesktopUpdate),
    Ovr(kTabStart, "Suspend", "Suspend", 25),
    Ovr(kTabStart, "Shut Down...", "Shut Down...", 27),
    Ovr(kTabStart, "Settings - Control Panel", "Settings - Control Panel", 35),
    Ovr(kTabStart, "Settings - Printers", "Settings - Printers", 37),
    // Folders
    Ovr(kTabFolders, "Closed Folder", "Closed Folder", 3),
    Ovr(kTabFolders, "Open Folder", "Open Folder", 4),
    Ovr(kTabFolders, "Program Group", "Program Group", 36),
    Ovr(kTabFolders, "Users Program Group", "Users Program Group", 42, NT, Num::UsersProgramGroup),
    Cls(kTabFolders, "Control Panel", ClassOf::Fixed, "{21EC2020-3AEA-1069-A2DD-08002B30309D}", System,
        "shell32.dll", Num::ControlPanel, 0, Always),
    Cls(kTabFolders, "Dial-Up Networking", ClassOf::DialUp, "", DialUp, "", kNoNum, 0, Always),
    Cls(kTabFolders, "Printers", ClassOf::Fixed, "{2227A280-3AEA-1069-A2DE-08002B30309D}", System, "shell32.dll",
        Num::Printers, 0, Always),
    Cls(kTabFolders, "Favorites", ClassOf::Fixed, "{1A9BA3A0-143A-11CF-8350-444553540000}", System, "shell32.dll",
        kNoNum, 79, ShellFolder),
    Cls(kTabFolders, "Url History", ClassOf::Fixed, "{FF393560-C2A7-11CF-BFF4-444553540000}", System, "shdocvw.dll",
        kNoNum, 36, ShellFolder),
    Cls(kTabFolders, "Subscriptions", ClassOf::Fixed, "{F5175861-2688-11d0-9C5E-00AA00A45957}", System,
        "Webcheck.dll", kNoNum, 0, DesktopUpdate),
    Cls(kTabFolders, "ActiveX Cache", ClassOf::Fixed, "{88C6C381-2E85-11D0-94DE-444553540000}", System, "occache.dll",
        kNoNum, 0, DesktopUpdate),
    Cls(kTabFolders, "Scheduled Tasks", ClassOf::Fixed, "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}", System,
        "mstask.dll", kNoNum, 0, ShellFolder),
    // Drives: the floppy captions carry the ANSI fraction characters, their keys stay plain.
    Ovr(kTabDrives, "Floppy Drive 5\xBC", "Floppy Drive 5.25", 5),
    Ovr(kTabDrives, "Floppy Drive 3\xBD", "Floppy Drive 3.5", 6),
    Ovr(kTabDrives, "Hard Drive", "Hard Drive", 8),
    Ovr(kTabDrives, "Network Drive (connected)", "Network Drive (connected)", 9),
    Ovr(kTabDrives, "Network Drive (offline)", "Network Drive (offline)", 10),
    Ovr(kTabDrives, "CD-ROM Drive", "CD-ROM Drive", 11),
    Ovr(kTabDrives, "Removable Drive", "Removable Drive", 7),
    Ovr(kTabDrives, "RAM Drive", "RAM Drive", 12),
    // Others
    Ovr(kTabOthers, "Shortcut Overlay", "Shortcut Overlay", 29),
    Ovr(kTabOthers, "Sharing Overlay", "Sharing Overlay", 28),
    Ovr(kTabOthers, "Desktop", "Desktop", 34),
    Ovr(kTabOthers, "Entire Network", "Entire Network", 13),
    Ovr(kTabOthers, "Workgroup", "Workgroup", 18),
    Ovr(kTabOthers, "Computer", "Computer", 15),
    Ovr(kTabOthers, "Audio CD", "Audio CD", 40),
    // System: document types, and three overrides for program and document kinds without a class
    Doc("Bitmap Image", ".bmp", Paint, "", kNoNum, 1),
    Doc("Configuration Settings", ".ini", System, "shell32.dll", Num::ConfigSettings, 0),
    Ovr(kTabSystem, "Default Icon", "Default Icon", 0),
    Ovr(kTabSystem, "Default Document", "Default Document", 1),
    Doc("GIF Image", ".gif", System, "mshtml.dll", kNoNum, 8),
    Doc("Internet Document", ".html", System, "mshtml.dll", kNoNum, 1),
    Doc("JPEG Image", ".jpeg", System, "mshtml.dll", kNoNum, 8),
    Doc("Media Clip", ".mmm", MediaPlayer, "", kNoNum, 0),
    Doc("Movie Clip", ".mpeg", System, "quartz.dll", kNoNum, 3),
    Ovr(kTabSystem, "MS-DOS Application", "MS-DOS Application", 2),
    Doc("MS-DOS Batch File", ".bat", System, "shell32.dll", Num::BatchFile, 0, Always),
    Doc("MIDI Sequence", ".mid", System, "quartz.dll", kNoNum, 8),
    Doc("Rich Text Format", ".rtf", System, "mshtml.dll", kNoNum, 1),
    Doc("Text Document", ".txt", System, "shell32.dll", Num::TextDocument, 0),
    Doc("Video Clip", ".avi", System, "quartz.dll", kNoNum, 0),
    Doc("Wave Sound", ".wav", System, "quartz.dll", kNoNum, 4),
    Doc("Write Document", ".wri", WordPad, "", kNoNum, 2),
    Doc("Zip File", ".zip", System, "quartz.dll", kNoNum, 4),
    // Pointers: the default is the program's own executable, whose icons 1 to 15 are the pointer images.
    Ptr("Normal Select", "Arrow", 1),
    Ptr("Help Select", "Help", 2),
    Ptr("Working In Background", "AppStarting", 3),
    Ptr("Busy", "Wait", 4),
    Ptr("Precision Select", "Crosshair", 5),
    Ptr("Text Select", "IBeam", 6),
    Ptr("Handwriting", "NWPEN", 7),
    Ptr("Unavailable", "No", 8),
    Ptr("Vertical Resize", "SizeNS", 9),
    Ptr("Horizontal Resize", "SizeWE", 10),
    Ptr("Diagonal Resize 1", "SizeNWSE", 11),
    Ptr("Diagonal Resize 2", "SizeNESW", 12),
    Ptr("Move", "SizeAll", 13),
    Ptr("Alternate Select", "UpArrow", 14),
    Ptr("Hand", "Hand", 15, Win98),
};

constexpr const char* kRenamable[] = {
    "My Computer",         "My Documents",        "Network Neighborhood", "The Internet",
    "In Box",              "My Briefcase",        "Recycle Bin (empty)",  "Recycle Bin (full)",
    "Control Panel",       "Dial-Up Networking",  "Printers",
};

bool Missing(const std::string& text) { return text.empty() || text == modRegistry::kError; }

std::string ClassKeyOf(const Row& r, const Environment& env) {
  switch (r.cls) {
    case ClassOf::MyComputer: return env.myComputerKey;
    case ClassOf::MyDocuments: return env.myDocumentsKey;
    case ClassOf::Network: return env.networkNeighborhoodKey;
    case ClassOf::Internet: return env.internetKey;
    case ClassOf::Mail: return env.mailKey;
    case ClassOf::RecycleBin: return env.recycleBinKey;
    case ClassOf::DialUp: return env.dialUpKey;
    case ClassOf::Fixed: return std::string("HKEY_CLASSES_ROOT\\CLSID\\") + r.where;
    case ClassOf::None: break;
  }
  return {};
}

int NumberOf(Num num, int fixed, const Environment& env) {
  switch (num) {
    case Num::Fixed: return fixed;
    case Num::TextDocument: return env.textDocumentIcon;
    case Num::BatchFile: return env.batchFileIcon;
    case Num::ConfigSettings: return env.configSettingsIcon;
    case Num::UsersProgramGroup: return env.usersProgramGroupIcon;
    case Num::ControlPanel: return env.controlPanelIcon;
    case Num::Printers: return env.printersIcon;
  }
  return fixed;
}

void SetDefault(const Row& r, const Environment& env, IconItem& item) {
  item.defaultIndex = NumberOf(r.num, r.index, env);
  switch (r.file) {
    case System: item.defaultFile = env.systemFolder + "\\" + r.fileName; break;
    case Windows: item.defaultFile = env.windowsFolder + "\\" + r.fileName; break;
    case Paint: item.defaultFile = env.paint; break;
    case MediaPlayer: item.defaultFile = env.mediaPlayer; break;
    case WordPad: item.defaultFile = env.wordPad; break;
    case Mail:
      item.defaultFile = env.mailDefaultFile;
      item.defaultIndex = env.mailDefaultIndex;
      break;
    case DialUp:
      item.defaultFile = env.dialUpDefaultFile;
      item.defaultIndex = env.dialUpDefaultIndex;
      break;
    case OwnExe: item.defaultFile = env.exePath; break;
  }
}

// Reads the conditions and names of the registry once per catalogue build.
class Builder {
 public:
  explicit Builder(const Environment& env) : env_(env) {}

  bool Listed(const Row& r, const std::string& classKey, const std::string& className) const {
    switch (r.when) {
      case Always: return true;
      case Win98: return env_.IsWin98();
      case NT: return env_.IsNT();
      case DesktopUpdate: return env_.desktopUpdate;
      case ShellFolder: return modRegistry::GetString(classKey + "\\ShellFolder", "") != modRegistry::kError;
      case DocClass: return !className.empty();
    }
    return false;
  }

  std::string CaptionOf(const Row& r, const std::string& classKey) {
    switch (r.shown) {
      case Caption::Plain: return r.caption;
      case Caption::DisplayName: return DisplayName(r.caption, classKey);
      case Caption::RecycleEmpty: return RecycleName(classKey) + " (empty)";
      case Caption::RecycleFull: return RecycleName(classKey) + " (full)";
    }
    return r.caption;
  }

 private:
  // Both Recycle Bin rows share one name, read once.
  const std::string& RecycleName(const std::string& classKey) {
    if (recycleName_.empty()) recycleName_ = DisplayName("Recycle Bin", classKey);
    return recycleName_;
  }

  const Environment& env_;
  std::string recycleName_;
};

}  // namespace

std::string DisplayName(const std::string& defaultCaption, const std::string& classKey) {
  const std::string name = modRegistry::GetString(classKey, "");
  return Missing(name) ? defaultCaption : name;
}

bool IsRenamable(const std::string& key) {
  return std::find(std::begin(kRenamable), std::end(kRenamable), key) != std::end(kRenamable);
}

std::vector<IconItem> BuildCatalogue(const Environment& env) {
  std::vector<IconItem> items;
  Builder builder(env);
  for (const Row& r : kRows) {
    IconItem item;
    item.tab = r.tab;
    item.key = r.key;
    std::string classKey;
    switch (r.store) {
      case Store::Class:
        classKey = ClassKeyOf(r, env);
        item.storageKey = classKey + "\\DefaultIcon";
        item.storageValue = r.value;
        break;
      case Store::Override:
        item.storageKey = kShellIconsKey;
        item.storageValue = std::to_string(r.number);
        break;
      case Store::Document: {
        const std::string cls = modRegistry::GetString(std::string("HKEY_CLASSES_ROOT\\") + r.where, "");
        if (!Missing(cls)) {
          item.className = cls;
          item.storageKey = "HKEY_CLASSES_ROOT\\" + cls + "\\DefaultIcon";
        }
        break;
      }
      case Store::Pointer:
        item.storageKey = kCursorsKey;
        item.storageValue = r.where;
        break;
    }
    if (!builder.Listed(r, classKey, item.className)) continue;
    if (IsRenamable(item.key)) item.classKey = classKey;
    item.caption = builder.CaptionOf(r, classKey);
    SetDefault(r, env, item);
    items.push_back(std::move(item));
  }
  return items;
}

int IconCount(const std::string& file) {
  // With index -1 the shell returns the number of icons in the file instead of an icon.
  HICON n = ExtractIconA(GetModuleHandleA(nullptr), file.c_str(), static_cast<UINT>(-1));
  return static_cast<int>(reinterpret_cast<UINT_PTR>(n));
}

ShownIcon CurrentIcon(const IconItem& item, const Environment& env) {
  const ShownIcon fallback{item.defaultFile, static_cast<int16_t>(item.defaultIndex)};
  if (item.storageKey.empty()) return fallback;
  std::string stored = modRegistry::GetString(item.storageKey, item.storageValue);
  if (Missing(stored)) return fallback;
  if (LowerAscii(stored.substr(0, 12)) == "%systemroot%") stored = env.windowsFolder + stored.substr(12);
  // A pointer value is a cursor file, commas and all: shown as it stands.
  if (item.tab == kTabPointers) return {stored, 0};
  int16_t index = 0;
  const std::string file = ui::SplitIconLocation(stored, index);
  const int count = IconCount(file);
  // An index equal to the count passes this bound as well; kept so, as rows always did.
  if (count != 0 && index >= 0 && index <= count) return {file, index};
  return fallback;
}

std::vector<IconItem> Add_Icons(const Environment& env, const IconLists& lists) {
  std::vector<IconItem> items = BuildCatalogue(env);
  for (const IconItem& item : items) {
    ui::ListBoxIcons* list = lists[item.tab];
    if (!list) continue;
    const ShownIcon shown = CurrentIcon(item, env);
    list->AddItem(item.caption, shown.file, shown.index, item.key);
  }
  return items;
}

const IconItem* FindItem(const std::vector<IconItem>& catalogue, int tab, const std::string& key) {
  for (const IconItem& item : catalogue)
    if (item.tab == tab && item.key == key) return &item;
  return nullptr;
}

}  // namespace vx
