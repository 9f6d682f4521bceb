#include "icons/Items.h"

#include "system/Keys.h"

namespace vx {
namespace {

using enum DefFile;
using enum When;
constexpr auto kNoNum = Num::Fixed;

// Desktop items: named by the shell from their class key. `id` is the class the Plus! theme files name.
constexpr ItemRow Desk(const char* caption, ClassOf cls, const char* id, DefFile file, const char* name, int index,
                       When when = Always) {
  return ItemRow{kTabDesktop, caption, caption, Store::Class, cls, id, 0, "", file, name, Num::Fixed, index, when,
                 Caption::DisplayName, true}
      .Applied(when)
      .ThemeWhen(when, when)
      .PerUser(UserStore::ExplorerClass);
}
constexpr ItemRow Bin(const char* key, const char* value, int index, Caption shown) {
  return ItemRow{kTabDesktop, key, key, Store::Class, ClassOf::RecycleBin, clsid::kRecycleBin, 0, value, System,
                 "shell32.dll", Num::Fixed, index, Always, shown, true}
      .PerUser(UserStore::ExplorerClass);
}
// A shell icon override whose default is the same number in shell32.dll; listed, written and kept in
// themes under the same condition.
constexpr ItemRow Ovr(int tab, const char* caption, const char* key, int number, When when = Always,
                      Num num = Num::Fixed) {
  return ItemRow{tab, caption, key, Store::Override, ClassOf::None, "", number, "", System, "shell32.dll", num,
                 number, when, Caption::Plain, false}
      .Applied(when)
      .ThemeWhen(when, when);
}
constexpr ItemRow Cls(int tab, const char* caption, ClassOf cls, const char* id, DefFile file, const char* name,
                      Num num, int index, When when) {
  return ItemRow{tab, caption, caption, Store::Class, cls, id, 0, "", file, name, num, index, when, Caption::Plain, false}
      .PerUser(UserStore::ExplorerClass);
}
constexpr ItemRow Doc(const char* caption, const char* ext, DefFile file, const char* name, Num num, int index,
                      When when = DocClass) {
  return ItemRow{kTabSystem, caption, caption, Store::Document, ClassOf::None, ext, 0, "", file, name, num, index, when,
                 Caption::Plain, false}
      .PerUser(UserStore::Classes);
}
// Pointers: the default is the program's own executable, whose icons 1 to 15 are the pointer images.
// `importPos` is the pointer's place in a Plus! theme's cursor section.
constexpr ItemRow Ptr(const char* caption, const char* role, int n, int importPos, When when = Always) {
  return ItemRow{kTabPointers, caption, caption, Store::Pointer, ClassOf::None, role, 0, "", OwnExe, "", Num::Fixed,
                 n, when, Caption::Plain, false}
      .Imported(importPos > 0 ? Import::PlusAndMotif : Import::None, importPos)
      .PerUser(UserStore::Cursors);
}

// Windows versions from which the shell no longer uses a row: XP dropped the mail In Box and Dial-Up
// Networking folders, Vista the classic Start menu and the old Internet Explorer folders, Windows 8 the
// Briefcase.
constexpr unsigned kXp = 0x0501, kVista = 0x0600, kWin8 = 0x0602;

constexpr auto kPlus = Import::Plus;
constexpr auto kMotif = Import::PlusAndMotif;

constexpr ItemRow kRows[] = {
    // Desktop
    Desk("My Computer", ClassOf::MyComputer, clsid::kMyComputer, Windows, "explorer.exe", 0).Imported(kMotif),
    Desk("My Documents", ClassOf::MyDocuments, clsid::kMyDocuments, System, "mydocs.dll", 0, Win98),
    Desk("Network Neighborhood", ClassOf::Network, clsid::kNetworkNeighborhood, System, "shell32.dll", 17)
        .Imported(kMotif),
    Desk("The Internet", ClassOf::Internet, clsid::kInternet, System, "mshtml.dll", 0).Imported(kPlus).Retired(kVista),
    Desk("In Box", ClassOf::Mail, clsid::kInBox, Mail, "", 0).Imported(kPlus).Retired(kXp),
    Desk("My Briefcase", ClassOf::Fixed, clsid::kBriefcase, System, "syncui.dll", 0).Retired(kWin8),
    Bin(kRecycleEmptyKey, "Empty", 31, Caption::RecycleEmpty).Imported(kMotif),
    Bin(kRecycleFullKey, "Full", 32, Caption::RecycleFull).Imported(kMotif),
    // Start
    Ovr(kTabStart, "Programs", "Programs", 19).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Favorites", "Favorites", 43, DesktopUpdate).Retired(kVista),
    Ovr(kTabStart, "Documents", "Documents", 20).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Settings", "Settings", 21).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Find", "Find", 22).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Help", "Help", 23).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Run...", "Run...", 24).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Log Off...", "Log Off...", 44, DesktopUpdate).Retired(kVista),
    Ovr(kTabStart, "Suspend", "Suspend", 25).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Shut Down...", "Shut Down...", 27).Imported(kPlus).Retired(kVista),
    Ovr(kTabStart, "Settings - Control Panel", "Settings - Control Panel", 35).Theme("Settings | Control Panel").Retired(kVista),
    Ovr(kTabStart, "Settings - Printers", "Settings - Printers", 37).Theme("Settings | Printers").Retired(kVista),
    // Folders: Apply writes the class icons with Favorites last; themes keep Url History before Favorites.
    Ovr(kTabFolders, kClosedFolderKey, kClosedFolderKey, 3).Imported(kPlus),
    Ovr(kTabFolders, "Open Folder", "Open Folder", 4).Imported(kPlus),
    Ovr(kTabFolders, "Program Group", "Program Group", 36).Imported(kPlus),
    Ovr(kTabFolders, "Users Program Group", "Users Program Group", 42, NT, Num::UsersProgramGroup).Retired(kVista),
    Cls(kTabFolders, "Control Panel", ClassOf::Fixed, clsid::kControlPanel, System, "shell32.dll", Num::ControlPanel,
        0, Always)
        .Renamable()
        .Imported(kPlus),
    Cls(kTabFolders, "Dial-Up Networking", ClassOf::DialUp, clsid::kDialUp, DialUp, "", kNoNum, 0, Always)
        .Renamable()
        .Retired(kXp)
        .Imported(kPlus),
    Cls(kTabFolders, "Printers", ClassOf::Fixed, clsid::kPrinters, System, "shell32.dll", Num::Printers, 0, Always)
        .Renamable()
        .Imported(kPlus),
    Cls(kTabFolders, "Favorites", ClassOf::Fixed, clsid::kFavorites, System, "shell32.dll", kNoNum, 79, ShellFolder)
        .Applied(Always, 11)
        .ThemePos(8)
        .Retired(kVista),
    Cls(kTabFolders, "Url History", ClassOf::Fixed, clsid::kUrlHistory, System, "shdocvw.dll", kNoNum, 36, ShellFolder)
        .Applied(Always, 7)
        .Theme("Url History Folder", Always, Always, 7)
        .Retired(kVista),
    Cls(kTabFolders, "Subscriptions", ClassOf::Fixed, clsid::kSubscriptions, System, "Webcheck.dll", kNoNum, 0,
        DesktopUpdate)
        .Applied(DesktopUpdate, 8)
        .ThemeWhen(DesktopUpdate, DesktopUpdate)
        .Retired(kVista),
    Cls(kTabFolders, "ActiveX Cache", ClassOf::Fixed, clsid::kActiveXCache, System, "occache.dll", kNoNum, 0,
        DesktopUpdate)
        .Applied(DesktopUpdate, 9)
        .ThemeWhen(DesktopUpdate, DesktopUpdate)
        .Retired(kVista),
    Cls(kTabFolders, "Scheduled Tasks", ClassOf::Fixed, clsid::kScheduledTasks, System, "mstask.dll", kNoNum, 0,
        ShellFolder)
        .Applied(Always, 10)
        .ThemeWhen(DesktopUpdate, DesktopUpdate)
        .Retired(kVista),
    // Drives: the floppy captions carry the ANSI fraction characters, their keys stay plain.
    Ovr(kTabDrives, "Floppy Drive 5\xBC", "Floppy Drive 5.25", 5).Theme("Floppy Drive (5.25)").Imported(kPlus),
    Ovr(kTabDrives, "Floppy Drive 3\xBD", "Floppy Drive 3.5", 6).Theme("Floppy Drive (3.5)").Imported(kPlus),
    Ovr(kTabDrives, kHardDriveKey, kHardDriveKey, 8).Imported(kPlus),
    Ovr(kTabDrives, "Network Drive (connected)", "Network Drive (connected)", 9).Theme("Network Drive").Imported(kPlus),
    Ovr(kTabDrives, "Network Drive (offline)", "Network Drive (offline)", 10).Imported(kPlus),
    Ovr(kTabDrives, "CD-ROM Drive", "CD-ROM Drive", 11).Imported(kPlus),
    Ovr(kTabDrives, "Removable Drive", "Removable Drive", 7).Theme("Removeable Drive").Imported(kPlus),
    Ovr(kTabDrives, "RAM Drive", "RAM Drive", 12).Imported(kPlus),
    // Others
    Ovr(kTabOthers, "Shortcut Overlay", "Shortcut Overlay", 29).Imported(kPlus),
    Ovr(kTabOthers, "Sharing Overlay", "Sharing Overlay", 28).Theme("Sharing").Imported(kPlus),
    Ovr(kTabOthers, "Desktop", "Desktop", 34).Imported(kPlus),
    Ovr(kTabOthers, "Entire Network", "Entire Network", 13).Imported(kPlus),
    Ovr(kTabOthers, "Workgroup", "Workgroup", 18).Imported(kPlus),
    Ovr(kTabOthers, "Computer", "Computer", 15).Imported(kPlus),
    Ovr(kTabOthers, "Audio CD", "Audio CD", 40).Imported(kPlus),
    // Never listed: Apply asks the list for it, gets an empty text and so empties the value "16" every
    // time. That is long-standing behaviour and is kept on purpose.
    Ovr(kTabOthers, "Printer", "Printer", 16, Never).Applied(Always).Theme(nullptr),
    // System: document types, and three overrides for program and document kinds without a class
    Doc("Bitmap Image", ".bmp", Paint, "", kNoNum, 1),
    Doc("Configuration Settings", ".ini", System, "shell32.dll", Num::ConfigSettings, 0),
    Ovr(kTabSystem, "Default Icon", "Default Icon", 0).Imported(kPlus),
    Ovr(kTabSystem, "Default Document", "Default Document", 1).Imported(kPlus),
    Doc("GIF Image", ".gif", System, "mshtml.dll", kNoNum, 8),
    Doc("Internet Document", ".html", System, "mshtml.dll", kNoNum, 1),
    Doc("JPEG Image", ".jpeg", System, "mshtml.dll", kNoNum, 8),
    Doc("Media Clip", ".mmm", MediaPlayer, "", kNoNum, 0),
    Doc("Movie Clip", ".mpeg", System, "quartz.dll", kNoNum, 3),
    Ovr(kTabSystem, "MS-DOS Application", "MS-DOS Application", 2).Imported(kPlus),
    Doc("MS-DOS Batch File", ".bat", System, "shell32.dll", Num::BatchFile, 0, Always),
    Doc("MIDI Sequence", ".mid", System, "quartz.dll", kNoNum, 8),
    Doc("Rich Text Format", ".rtf", System, "mshtml.dll", kNoNum, 1),
    Doc("Text Document", ".txt", System, "shell32.dll", Num::TextDocument, 0),
    Doc("Video Clip", ".avi", System, "quartz.dll", kNoNum, 0),
    Doc("Wave Sound", ".wav", System, "quartz.dll", kNoNum, 4),
    Doc("Write Document", ".wri", WordPad, "", kNoNum, 2),
    Doc("Zip File", ".zip", System, "quartz.dll", kNoNum, 4).NoDefault(),
    // Pointers, in scheme order: the position is the pointer's number n.
    Ptr("Normal Select", "Arrow", 1, 2),
    Ptr("Help Select", "Help", 2, 5),
    Ptr("Working In Background", "AppStarting", 3, 3),
    Ptr("Busy", "Wait", 4, 1),
    Ptr("Precision Select", "Crosshair", 5, 4),
    Ptr("Text Select", "IBeam", 6, 6),
    Ptr("Handwriting", "NWPEN", 7, 14),
    Ptr("Unavailable", "No", 8, 7),
    Ptr("Vertical Resize", "SizeNS", 9, 10),
    Ptr("Horizontal Resize", "SizeWE", 10, 12),
    Ptr("Diagonal Resize 1", "SizeNWSE", 11, 11),
    Ptr("Diagonal Resize 2", "SizeNESW", 12, 9),
    Ptr("Move", "SizeAll", 13, 8),
    Ptr("Alternate Select", "UpArrow", 14, 13),
    Ptr("Hand", "Hand", 15, 15, Win98OrXp).Imported(kPlus, 15).ThemeWhen(Win98OrXp, Always),
    // Windows 10's two roles: listed, written and kept in themes only there; no foreign format has them.
    Ptr("Location Select", "Pin", 16, -1, Win10).Applied(Win10).ThemeWhen(Win10, Win10),
    Ptr("Person Select", "Person", 17, -1, Win10).Applied(Win10).ThemeWhen(Win10, Win10),
};

}  // namespace

std::span<const ItemRow> ItemTable() { return kRows; }

const ItemRow* FindRow(int tab, const std::string& key) {
  for (const ItemRow& r : kRows)
    if (r.tab == tab && key == r.key) return &r;
  return nullptr;
}

bool Holds(When when, const Environment& env) {
  switch (when) {
    case Always: return true;
    case Never: return false;
    case Win98: return env.IsWin98();
    case NT: return env.IsNT();
    case DesktopUpdate: return env.desktopUpdate;
    case Win98OrXp: return env.IsWin98() || env.perUser;
    case Win10: return env.pinAndPerson;
    case ShellFolder:
    case DocClass: return true;
  }
  return false;
}

std::string ClassKeyOf(const ItemRow& r, const Environment& env) {
  switch (r.cls) {
    case ClassOf::MyComputer: return env.myComputerKey;
    case ClassOf::MyDocuments: return env.myDocumentsKey;
    case ClassOf::Network: return env.networkNeighborhoodKey;
    case ClassOf::Internet: return env.internetKey;
    case ClassOf::Mail: return env.mailKey;
    case ClassOf::RecycleBin: return env.recycleBinKey;
    case ClassOf::DialUp: return env.dialUpKey;
    case ClassOf::Fixed: return std::string(kMachineClsid) + r.where;
    case ClassOf::None: break;
  }
  return {};
}

namespace {

constexpr const char* kExplorerClsid = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\CLSID\\";
constexpr const char* kUserClasses = "HKEY_CURRENT_USER\\Software\\Classes\\";

// The class identifier at the end of a class key path.
std::string ClassIdOf(const ItemRow& r, const Environment& env) {
  const std::string key = ClassKeyOf(r, env);
  return key.substr(key.rfind('\\') + 1);
}

}  // namespace

std::string UserIconKey(const ItemRow& r, const Environment& env, const std::string& className) {
  if (!env.perUser) return {};
  switch (r.user) {
    case UserStore::ExplorerClass: return kExplorerClsid + ClassIdOf(r, env) + "\\DefaultIcon";
    case UserStore::Classes: return className.empty() ? std::string() : kUserClasses + className + "\\DefaultIcon";
    case UserStore::Cursors: return kCursorsKey;
    case UserStore::None: break;
  }
  return {};
}

std::string UserNameKey(const ItemRow& r, const Environment& env) {
  if (!env.perUser || !r.renamable || r.user != UserStore::ExplorerClass) return {};
  return kExplorerClsid + ClassIdOf(r, env);
}

bool IsRetired(const ItemRow& r, const Environment& env) {
  return env.perUser && r.retiredFrom != 0 && env.ntVersion >= r.retiredFrom;
}

bool IsMachineWide(const ItemRow& r, const Environment& env) { return env.perUser && r.user == UserStore::None; }

std::vector<WriteTarget> ApplyTargets(const ItemRow& r, const Environment& env, const std::string& className) {
  std::vector<WriteTarget> t;
  // The XP family writes what is listed; older editions what the row's apply condition names.
  if (!Holds(env.perUser ? r.listed : r.applied, env)) return t;
  const bool bin = r.cls == ClassOf::RecycleBin;
  auto icon = [&](const std::string& key) {
    if (bin) {
      for (const char* v : {"", "Empty", "Full"}) t.push_back({key, v});
    } else {
      t.push_back({key, r.value});
    }
  };
  if (env.perUser && r.user != UserStore::None) {
    const std::string key = UserIconKey(r, env, className);
    if (r.user == UserStore::Cursors) {
      // The role, and the named scheme the Mouse settings show.
      t.push_back({key, r.where});
      t.push_back({key, ""});
      t.push_back({key, "Scheme Source"});
      t.push_back({key + "\\Schemes", "", true});
    } else if (!key.empty()) {
      icon(key);
    }
    if (r.renamable) t.push_back({UserNameKey(r, env), ""});
    return t;
  }
  switch (r.store) {
    case Store::Class: icon(ClassKeyOf(r, env) + "\\DefaultIcon"); break;
    case Store::Override: t.push_back({kShellIconsKey, std::to_string(r.number)}); break;
    case Store::Document:
      if (!className.empty()) t.push_back({kClassesRoot + className + "\\DefaultIcon", ""});
      if (r.where == std::string(".bmp"))
        for (WriteTarget w : {WriteTarget{"HKEY_CLASSES_ROOT\\.bmp", ""}, WriteTarget{"HKEY_CLASSES_ROOT\\.bmp\\ShellNew", "Command"},
                              WriteTarget{"HKEY_CLASSES_ROOT\\Paint.Picture\\DefaultIcon", ""}})
          t.push_back(w);
      break;
    case Store::Pointer: t.push_back({kCursorsKey, r.where}); break;
  }
  if (r.renamable) t.push_back({ClassKeyOf(r, env), ""});
  return t;
}

std::string ThemeKeyOf(const ItemRow& r) { return r.themeKey && *r.themeKey ? r.themeKey : r.key; }

int PointerNumber(const std::string& key) {
  const ItemRow* r = FindRow(kTabPointers, key);
  return r ? r->index : 0;
}

bool IsRenamable(const std::string& key) {
  for (const ItemRow& r : kRows)
    if (r.renamable && key == r.key) return true;
  return false;
}

const char* ThemeSection(int tab) {
  switch (tab) {
    case kTabDesktop: return "Desktop Icons";
    case kTabStart: return "Start Icons";
    case kTabFolders: return "Folder Icons";
    case kTabDrives: return "Drive Icons";
    case kTabOthers: return "Other Icons";
    case kTabSystem: return "System Icons";
    case kTabPointers: return "Pointers";
    default: return "";
  }
}

}  // namespace vx
