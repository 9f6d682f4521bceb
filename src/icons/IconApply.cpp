#include "icons/IconApply.h"

#include "icons/Refresh.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"

namespace vx {
namespace {

const std::string kClsid = "HKEY_CLASSES_ROOT\\CLSID\\";
const std::string kBriefcaseKey = kClsid + "{85BBD920-42A0-1069-A2E4-08002B30309D}";
const std::string kControlPanelKey = kClsid + "{21EC2020-3AEA-1069-A2DD-08002B30309D}";
const std::string kPrintersKey = kClsid + "{2227A280-3AEA-1069-A2DE-08002B30309D}";
const std::string kUrlHistoryKey = kClsid + "{FF393560-C2A7-11CF-BFF4-444553540000}";
const std::string kSubscriptionsKey = kClsid + "{F5175861-2688-11d0-9C5E-00AA00A45957}";
const std::string kActiveXCacheKey = kClsid + "{88C6C381-2E85-11D0-94DE-444553540000}";
const std::string kScheduledTasksKey = kClsid + "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}";
const std::string kFavoritesKey = kClsid + "{1A9BA3A0-143A-11CF-8350-444553540000}";
const std::string kDefaultIcon = "\\DefaultIcon";

// When a Shell Icons row is written.
enum class When { Always, DesktopUpdate, WinNT };

struct OverrideRow {
  const char* key;
  const char* value;  // shell32 icon number
  When when;
};

constexpr OverrideRow kStartRows[] = {
    {"Programs", "19", When::Always},       {"Favorites", "43", When::DesktopUpdate},
    {"Documents", "20", When::Always},      {"Settings", "21", When::Always},
    {"Find", "22", When::Always},           {"Help", "23", When::Always},
    {"Run...", "24", When::Always},         {"Log Off...", "44", When::DesktopUpdate},
    {"Suspend", "25", When::Always},        {"Shut Down...", "27", When::Always},
    {"Settings - Control Panel", "35", When::Always}, {"Settings - Printers", "37", When::Always},
};

constexpr OverrideRow kFolderRows[] = {
    {"Closed Folder", "3", When::Always},
    {"Open Folder", "4", When::Always},
    {"Program Group", "36", When::Always},
    {"Users Program Group", "42", When::WinNT},
};

constexpr OverrideRow kDriveRows[] = {
    {"Floppy Drive 5.25", "5", When::Always},          {"Floppy Drive 3.5", "6", When::Always},
    {"Hard Drive", "8", When::Always},                 {"Network Drive (connected)", "9", When::Always},
    {"Network Drive (offline)", "10", When::Always},   {"CD-ROM Drive", "11", When::Always},
    {"Removable Drive", "7", When::Always},            {"RAM Drive", "12", When::Always},
};

// "Printer" is no item of the Others list: it reads as an empty text, so value "16" is emptied on
// every Apply. That is long-standing behaviour and is kept on purpose.
constexpr OverrideRow kOtherRows[] = {
    {"Shortcut Overlay", "29", When::Always}, {"Sharing Overlay", "28", When::Always},
    {"Desktop", "34", When::Always},          {"Entire Network", "13", When::Always},
    {"Workgroup", "18", When::Always},        {"Computer", "15", When::Always},
    {"Audio CD", "40", When::Always},         {"Printer", "16", When::Always},
};

constexpr OverrideRow kSystemRows[] = {
    {"Default Icon", "0", When::Always},
    {"Default Document", "1", When::Always},
    {"MS-DOS Application", "2", When::Always},
};

// Document types written to their class's DefaultIcon, in list order.
constexpr const char* kDocumentTypes[] = {
    "Bitmap Image", "Configuration Settings", "GIF Image",         "Internet Document", "JPEG Image",
    "Media Clip",   "Movie Clip",             "MS-DOS Batch File", "MIDI Sequence",     "Rich Text Format",
    "Text Document", "Video Clip",            "Wave Sound",        "Write Document",    "Zip File",
};

struct PointerRow {
  const char* key;
  const char* value;  // name under the Cursors key
};

constexpr PointerRow kPointerRows[] = {
    {"Normal Select", "Arrow"},       {"Help Select", "Help"},         {"Working In Background", "AppStarting"},
    {"Busy", "Wait"},                 {"Precision Select", "Crosshair"}, {"Text Select", "IBeam"},
    {"Handwriting", "NWPEN"},         {"Unavailable", "No"},           {"Vertical Resize", "SizeNS"},
    {"Horizontal Resize", "SizeWE"},  {"Diagonal Resize 1", "SizeNWSE"}, {"Diagonal Resize 2", "SizeNESW"},
    {"Move", "SizeAll"},              {"Alternate Select", "UpArrow"}, {"Hand", "Hand"},
};

bool Holds(When when, const Environment& env) {
  switch (when) {
    case When::Always:
      return true;
    case When::DesktopUpdate:
      return env.desktopUpdate;
    case When::WinNT:
      return env.IsNT();
  }
  return false;
}

// Builds the plan in order; one small method per kind of write keeps the order readable below.
class Builder {
 public:
  Builder(const Environment& env, const std::vector<IconItem>& catalogue, const ListValues& lists)
      : env_(env), catalogue_(catalogue), lists_(lists) {}

  Plan plan;

  // A desktop or folder item's class key: the catalogue's when it lists the item, else the one the
  // environment determined (the catalogue takes it from there too).
  std::string ClassKey(int tab, const char* key, const std::string& fallback) const {
    const IconItem* item = FindItem(catalogue_, tab, key);
    return item && !item->classKey.empty() ? item->classKey : fallback;
  }

  void Icon(int tab, const char* key, const std::string& classKey) {
    plan.push_back(SetString(classKey + kDefaultIcon, "", lists_.ItemFullPath(tab, key)));
  }

  void Name(int tab, const char* key, const std::string& classKey) {
    plan.push_back(SetString(classKey, "", lists_.ItemCaption(tab, key)));
  }

  void Overrides(int tab, const OverrideRow* begin, const OverrideRow* end) {
    for (const OverrideRow* row = begin; row != end; ++row)
      if (Holds(row->when, env_))
        plan.push_back(SetString(kShellIconsKey, row->value, lists_.ItemFullPath(tab, row->key)));
  }

  template <size_t N>
  void Overrides(int tab, const OverrideRow (&rows)[N]) {
    Overrides(tab, rows, rows + N);
  }

  const Environment& env_;
  const std::vector<IconItem>& catalogue_;
  const ListValues& lists_;
};

}  // namespace

Plan BitmapThumbnailSteps(const IconApplyOptions& options) {
  if (!options.settingsTreeBuilt || options.autoApplyMode || !options.bitmapThumbnail) return {};
  const std::string pictureIcon = "HKEY_CLASSES_ROOT\\Paint.Picture\\DefaultIcon";
  if (*options.bitmapThumbnail)
    return {SetString("HKEY_CLASSES_ROOT\\.bmp", "", "Paint.Picture"),
            SetString("HKEY_CLASSES_ROOT\\.bmp\\ShellNew", "Command", ""),
            SetString(pictureIcon, "", "%1")};
  return {SetString(pictureIcon, "", "C:\\Program Files\\Accessories\\mspaint.exe,1")};
}

Plan PointerSteps(const ListValues& lists) {
  Plan plan;
  for (const PointerRow& row : kPointerRows)
    plan.push_back(SetString(kCursorsKey, row.value, lists.ItemFullPathmouse(kTabPointers, row.key)));
  // Each call reloads the whole scheme; the fifteen calls are long-standing behaviour, kept as is.
  for (UINT i = 0; i < 15; ++i) plan.push_back(SystemParameter(SPI_SETCURSORS, i, 0));
  return plan;
}

Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const ListValues& lists, const IconApplyOptions& options) {
  Builder b(env, catalogue, lists);
  const bool win98 = env.IsWin98();

  // 1. Desktop icons.
  const std::string myComputer = b.ClassKey(kTabDesktop, "My Computer", env.myComputerKey);
  const std::string myDocuments = b.ClassKey(kTabDesktop, "My Documents", env.myDocumentsKey);
  const std::string network = b.ClassKey(kTabDesktop, "Network Neighborhood", env.networkNeighborhoodKey);
  const std::string internet = b.ClassKey(kTabDesktop, "The Internet", env.internetKey);
  const std::string inBox = b.ClassKey(kTabDesktop, "In Box", env.mailKey);
  const std::string recycleBin = b.ClassKey(kTabDesktop, "Recycle Bin (empty)", env.recycleBinKey);
  b.Icon(kTabDesktop, "My Computer", myComputer);
  if (win98) b.Icon(kTabDesktop, "My Documents", myDocuments);
  b.Icon(kTabDesktop, "Network Neighborhood", network);
  b.Icon(kTabDesktop, "The Internet", internet);
  b.Icon(kTabDesktop, "In Box", inBox);
  b.Icon(kTabDesktop, "My Briefcase", kBriefcaseKey);
  {
    // The default value is the icon the desktop shows now: keep showing the state the bin is in.
    const std::string binIcon = recycleBin + kDefaultIcon;
    const bool showsEmpty = LowerAscii(modRegistry::GetString(binIcon, "")) ==
                            LowerAscii(modRegistry::GetString(binIcon, "empty"));
    const std::string empty = lists.ItemFullPath(kTabDesktop, "Recycle Bin (empty)");
    const std::string full = lists.ItemFullPath(kTabDesktop, "Recycle Bin (full)");
    b.plan.push_back(SetString(binIcon, "", showsEmpty ? empty : full));
    b.plan.push_back(SetString(binIcon, "Empty", empty));
    b.plan.push_back(SetString(binIcon, "Full", full));
  }

  // 2. Desktop names. Both bin rows share one name: the empty row's caption less " (empty)".
  b.Name(kTabDesktop, "My Computer", myComputer);
  if (win98) b.Name(kTabDesktop, "My Documents", myDocuments);
  b.Name(kTabDesktop, "Network Neighborhood", network);
  b.Name(kTabDesktop, "The Internet", internet);
  b.Name(kTabDesktop, "In Box", inBox);
  b.Name(kTabDesktop, "My Briefcase", kBriefcaseKey);
  {
    const std::string caption = lists.ItemCaption(kTabDesktop, "Recycle Bin (empty)");
    b.plan.push_back(SetString(recycleBin, "", caption.substr(0, caption.size() >= 8 ? caption.size() - 8 : 0)));
  }

  // 3. Start.
  b.Overrides(kTabStart, kStartRows);

  // 4. Folders: overrides, class icons, then the three renamable folders' names.
  b.Overrides(kTabFolders, kFolderRows);
  const std::string dialUp = b.ClassKey(kTabFolders, "Dial-Up Networking", env.dialUpKey);
  b.Icon(kTabFolders, "Control Panel", kControlPanelKey);
  b.Icon(kTabFolders, "Dial-Up Networking", dialUp);
  b.Icon(kTabFolders, "Printers", kPrintersKey);
  b.Icon(kTabFolders, "Url History", kUrlHistoryKey);
  if (env.desktopUpdate) {
    b.Icon(kTabFolders, "Subscriptions", kSubscriptionsKey);
    b.Icon(kTabFolders, "ActiveX Cache", kActiveXCacheKey);
  }
  b.Icon(kTabFolders, "Scheduled Tasks", kScheduledTasksKey);
  b.Icon(kTabFolders, "Favorites", kFavoritesKey);
  b.Name(kTabFolders, "Control Panel", kControlPanelKey);
  b.Name(kTabFolders, "Dial-Up Networking", dialUp);
  b.Name(kTabFolders, "Printers", kPrintersKey);

  // 5. Drives and Others.
  b.Overrides(kTabDrives, kDriveRows);
  b.Overrides(kTabOthers, kOtherRows);

  // 6. Document types. A type without a registered class has nothing to write to.
  b.Overrides(kTabSystem, kSystemRows);
  for (const char* key : kDocumentTypes) {
    const std::string location = lists.ItemFullPath(kTabSystem, key);
    const IconItem* item = FindItem(catalogue, kTabSystem, key);
    if (location.size() >= 2 && item && !item->className.empty())
      b.plan.push_back(SetString("HKEY_CLASSES_ROOT\\" + item->className + kDefaultIcon, "", location));
    if (std::string(key) == "Bitmap Image") {
      Plan bitmap = BitmapThumbnailSteps(options);
      b.plan.insert(b.plan.end(), bitmap.begin(), bitmap.end());
    }
  }

  // 7. Pointers.
  Plan pointers = PointerSteps(lists);
  b.plan.insert(b.plan.end(), pointers.begin(), pointers.end());

  // 8. The theme the lists came from, for the next start.
  b.plan.push_back(SetString(kProgramSettingsKey, "Current Theme", options.currentThemePath));
  return std::move(b.plan);
}

UndoRecord ApplyIconChanges(const Environment& env, const std::vector<IconItem>& catalogue,
                            const ListValues& lists, const IconApplyOptions& options,
                            bool& rebuildCachePending, bool& restartNeeded, bool& restartLater,
                            const std::function<void()>& refreshFolderTree) {
  UndoRecord undo = Execute(BuildIconApplyPlan(env, catalogue, lists, options));
  if (rebuildCachePending) RebuildIconCache(env, rebuildCachePending, refreshFolderTree);
  if (restartNeeded && PromptRestart(env, restartNeeded)) restartLater = true;
  return undo;
}

}  // namespace vx
