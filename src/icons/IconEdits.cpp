#include "icons/IconEdits.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "icons/FolderIcons.h"
#include "registry/modCommon.h"
#include "ui/ListBoxIcons.h"
#include "ui/seam.h"
#include "ui/win.h"

namespace vx {
namespace {

using Keys = std::span<const char* const>;

constexpr const char* kDesktopKeys[] = {"My Computer", "My Documents", "Network Neighborhood", "The Internet",
                                        "In Box", "My Briefcase", "Recycle Bin (empty)", "Recycle Bin (full)"};
constexpr const char* kStartKeys[] = {"Programs", "Favorites", "Documents", "Settings", "Find", "Help", "Run...",
                                      "Log Off...", "Suspend", "Shut Down...", "Settings - Control Panel",
                                      "Settings - Printers"};
constexpr const char* kFolderKeys[] = {"Closed Folder", "Open Folder", "Program Group", "Users Program Group",
                                       "Control Panel", "Dial-Up Networking", "Printers", "Favorites",
                                       "Url History", "Subscriptions", "ActiveX Cache", "Scheduled Tasks"};
constexpr const char* kDriveKeys[] = {"Floppy Drive 5.25", "Floppy Drive 3.5", "Hard Drive",
                                      "Network Drive (connected)", "Network Drive (offline)", "CD-ROM Drive",
                                      "Removable Drive", "RAM Drive"};
constexpr const char* kOtherKeys[] = {"Shortcut Overlay", "Sharing Overlay", "Desktop", "Entire Network",
                                      "Workgroup", "Computer", "Audio CD"};
constexpr const char* kSystemKeys[] = {"Bitmap Image", "Configuration Settings", "Default Icon",
                                       "Default Document", "GIF Image", "Internet Document", "JPEG Image",
                                       "Media Clip", "Movie Clip", "MS-DOS Application", "MS-DOS Batch File",
                                       "MIDI Sequence", "Rich Text Format", "Text Document", "Video Clip",
                                       "Wave Sound", "Zip File", "Write Document"};
// "Zip File" has no Windows default to go back to.
constexpr const char* kSystemDefaultKeys[] = {"Bitmap Image", "Configuration Settings", "Default Icon",
                                              "Default Document", "GIF Image", "Internet Document", "JPEG Image",
                                              "Media Clip", "Movie Clip", "MS-DOS Application", "MS-DOS Batch File",
                                              "MIDI Sequence", "Rich Text Format", "Text Document", "Video Clip",
                                              "Wave Sound", "Write Document"};
// In scheme order: the position is the pointer's number n.
constexpr const char* kPointerKeys[] = {"Normal Select", "Help Select", "Working In Background", "Busy",
                                        "Precision Select", "Text Select", "Handwriting", "Unavailable",
                                        "Vertical Resize", "Horizontal Resize", "Diagonal Resize 1",
                                        "Diagonal Resize 2", "Move", "Alternate Select", "Hand"};

Keys ChangeKeys(int tab) {
  switch (tab) {
    case kTabDesktop: return kDesktopKeys;
    case kTabStart: return kStartKeys;
    case kTabFolders: return kFolderKeys;
    case kTabDrives: return kDriveKeys;
    case kTabOthers: return kOtherKeys;
    case kTabSystem: return kSystemKeys;
    case kTabPointers: return kPointerKeys;
    default: return {};
  }
}

Keys DefaultKeys(int tab) { return tab == kTabSystem ? Keys(kSystemDefaultKeys) : ChangeKeys(tab); }

bool Contains(Keys keys, const std::string& key) {
  return std::any_of(keys.begin(), keys.end(), [&](const char* k) { return key == k; });
}

const char* kRecycleEmpty = "Recycle Bin (empty)";
const char* kRecycleFull = "Recycle Bin (full)";

bool IsRecycleBin(const std::string& key) { return key == kRecycleEmpty || key == kRecycleFull; }

bool SamePath(const std::string& a, const std::string& b) { return LowerAscii(a) == LowerAscii(b); }

struct Editing {
  std::string file;
  int16_t index = 0;
};
Editing& Current() {
  static Editing e;
  return e;
}

// Seconds since midnight, local time, to the millisecond.
double Timer() {
  SYSTEMTIME t;
  GetLocalTime(&t);
  return t.wHour * 3600.0 + t.wMinute * 60.0 + t.wSecond + t.wMilliseconds / 1000.0;
}

// Pointers choose a cursor file instead of an icon.
void ChangePointer(EditHost& host, ui::ListBoxIcons& list) {
  static constexpr char kFilter[] =
      "Cursor Files\0*.cur;*.ani\0Standard Cursors (*.cur)\0*.cur\0Animated Cursors (*.ani)\0*.ani\0";
  ui::FileDialog dialog;
  dialog.title = "Browse for Pointers";
  dialog.filter.assign(kFilter, sizeof kFilter - 1);
  dialog.initialFile = Current().file;
  if (!ui::GetSeam().ShowFileDialog(host.Owner(), dialog)) return;
  Current().file = dialog.initialFile;
  const std::string key = list.SeledKey();
  if (PointerNumber(key) != 0) list.Change(key, dialog.initialFile, 0);
  list.ItemRefresh();
  host.SetInfoBar(list.SeledFullIconPath());
}

}  // namespace

bool ChangeableOn(int tab, const std::string& key) { return Contains(ChangeKeys(tab), key); }
bool RestorableOn(int tab, const std::string& key) { return Contains(DefaultKeys(tab), key); }

int PointerNumber(const std::string& key) {
  for (size_t i = 0; i < std::size(kPointerKeys); ++i)
    if (key == kPointerKeys[i]) return static_cast<int>(i) + 1;
  return 0;
}

const std::string& CurrentIconFile() { return Current().file; }
int16_t CurrentIconIndex() { return Current().index; }

void Pause(float seconds) {
  const double start = Timer();
  for (;;) {
    double now = Timer();
    if (now < start) now += 86400.0;  // past midnight the timer starts again from zero
    const double left = start + seconds - now;
    if (left <= 0) break;
    ui::DoEvents();
    MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(left * 1000.0) + 1, QS_ALLINPUT);
  }
}

void lstbxIcons_Click(EditHost& host, int tab) {
  ui::ListBoxIcons* list = host.List(tab);
  if (!list) return;
  host.SetInfoBar(list->SeledFullIconPath());
  const std::string key = list->SeledKey();
  if (key == "Zip File") {
    host.EnableDefault(false);
  } else if (IsRenamable(key)) {
    host.EnableRename(true);
  } else {
    host.EnableDefault(true);
    host.EnableRename(false);
    if (tab == kTabPointers) {
      // A pointer shows its cursor file alone; the program's own executable stands for the default.
      const std::string file = list->SeledIconPath();
      if (SamePath(file, host.Env().exePath)) {
        host.SetInfoBar(kDefaultCursorText);
        host.EnableDefault(false);
      } else {
        host.SetInfoBar(file);
      }
    }
  }
}

void lstbxIcons_KeyDown(EditHost& host, int tab, int keyCode, int /*shift*/) {
  switch (keyCode) {
    case VK_PRIOR:
    case VK_NEXT:
    case VK_UP:
    case VK_DOWN: lstbxIcons_Click(host, tab); break;
    default: break;
  }
}

void lstbxIcons_DblClick(EditHost& host, int /*tab*/) {
  // Lets the list finish its own double-click handling before the picker takes over.
  Pause(0.1f);
  cmdChange_Click(host);
}

void cmdChange_Click(EditHost& host) {
  const int tab = host.CurrentTab();
  const std::string info = host.InfoBar();

  std::string start = info;
  if (tab == kTabExplorer && !IsCustomised(info)) {
    // An uncustomised folder or drive starts from the icon its kind has.
    ui::ListBoxIcons* kinds = nullptr;
    std::string kind;
    if (IsDriveRoot(host.ExplorerPath())) {
      kinds = host.List(kTabDrives);
      kind = "Hard Drive";
    } else if (!info.empty()) {
      kinds = host.List(kTabFolders);
      kind = "Closed Folder";
    } else {
      return;
    }
    start = kinds ? kinds->ItemFullPath(kind) : std::string();
  }
  Current().file = ui::SplitIconLocation(start, Current().index);

  ui::ListBoxIcons* list = host.List(tab);
  if (tab == kTabPointers) {
    if (list) ChangePointer(host, *list);
  } else {
    if (tab != kTabExplorer && !list) return;
    std::string file = Current().file;
    int16_t index = Current().index;
    if (!ui::GetSeam().ChooseIcon(host.Owner(), file, index)) return;
    Current() = {file, index};
    if (info == file + "," + std::to_string(index)) return;  // the location already shown is no edit
    host.SetRebuildCachePending();
    if (tab == kTabExplorer) {
      ExplorerChange(host, file, index);
    } else {
      const std::string key = list->SeledKey();
      if (ChangeableOn(tab, key)) {
        list->Change(key, file, index);
        list->ItemRefresh();
        host.SetInfoBar(list->SeledFullIconPath());
      }
    }
  }

  if (tab == kTabExplorer)
    host.RefreshFolderTree();
  else
    host.EnableApply();
}

void cmdDefault_Click(EditHost& host) {
  const int tab = host.CurrentTab();
  if (tab == kTabExplorer) {
    ExplorerDefault(host);
    return;
  }
  ui::ListBoxIcons* list = host.List(tab);
  if (!list) return;
  const std::string key = list->SeledKey();
  if (!RestorableOn(tab, key)) return;

  if (tab == kTabPointers) {
    list->Change(key, host.Env().exePath, static_cast<int16_t>(PointerNumber(key)));
  } else {
    const IconItem* item = FindItem(host.Catalogue(), tab, key);
    if (!item) return;
    list->Change(key, item->defaultFile, static_cast<int16_t>(item->defaultIndex));
  }
  host.SetRebuildCachePending();
  list->ItemRefresh();
  if (tab == kTabPointers)
    lstbxIcons_Click(host, tab);
  else
    host.SetInfoBar(list->SeledFullIconPath());
  host.EnableApply();
}

void cmdRename_Click(EditHost& host) {
  ui::ListBoxIcons* list = host.List(host.CurrentTab());
  if (!list) return;
  const std::string key = list->SeledKey();
  // The button may still be enabled from another tab; only class-named items can be renamed.
  if (!IsRenamable(key)) return;

  const std::string caption = list->SeledCaption();
  std::string text = caption;
  if (IsRecycleBin(key)) {
    // Both rows share one name: the caption of the empty bin less " (empty)".
    const std::string empty = list->ItemCaption(kRecycleEmpty);
    text = empty.substr(0, empty.size() > 8 ? empty.size() - 8 : 0);
  }
  const std::optional<std::string> name =
      ui::GetSeam().AskName(host.Owner(), "Type a new name for " + key, text, caption);
  if (!name || name->empty()) return;

  if (IsRecycleBin(key)) {
    list->Change(kRecycleEmpty, "", -1, *name + " (empty)");
    list->Change(kRecycleFull, "", -1, *name + " (full)");
    list->ListRefresh();
  } else if (*name == caption) {
    return;
  } else {
    list->Change(key, "", -1, *name);
    list->ItemRefresh();
  }
  host.SetRebuildCachePending();
  host.EnableApply();
}

}  // namespace vx
