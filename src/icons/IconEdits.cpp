#include "icons/IconEdits.h"

#include "icons/FolderIcons.h"
#include "registry/modCommon.h"
#include "system/Location.h"
#include "ui/ListBoxIcons.h"
#include "ui/seam.h"
#include "ui/win.h"

namespace vx {
namespace {

bool IsRecycleBin(const std::string& key) { return key == kRecycleEmptyKey || key == kRecycleFullKey; }

bool SamePath(const std::string& a, const std::string& b) { return SameFile(a, b); }

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

// The key table: Change acts on every item a tab can list (in any edition), Default Icon on those of
// them that have a default to go back to.
bool ChangeableOn(int tab, const std::string& key) {
  const ItemRow* row = FindRow(tab, key);
  return row && row->listed != When::Never;
}

bool RestorableOn(int tab, const std::string& key) { return ChangeableOn(tab, key) && FindRow(tab, key)->restorable; }

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
  if (ChangeableOn(tab, key) && !RestorableOn(tab, key)) {
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
      kind = kHardDriveKey;
    } else if (!info.empty()) {
      kinds = host.List(kTabFolders);
      kind = kClosedFolderKey;
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
    // The XP family goes back to Windows' own scheme where it has one.
    const SchemeEntry own = host.Env().perUser ? WindowsPointer(PointerNumber(key)) : SchemeEntry{};
    if (!own.file.empty())
      list->Change(key, own.file, 0);
    else
      list->Change(key, host.Env().exePath, static_cast<int16_t>(PointerNumber(key)));
  } else {
    const IconItem* item = FindItem(host.Catalogue(), tab, key);
    if (!item) return;
    // The XP family's default is what Windows keeps itself, so that Apply takes the override away.
    const ShownIcon back = host.Env().perUser ? BaseIcon(*item, host.Env())
                                              : ShownIcon{item->defaultFile, static_cast<int16_t>(item->defaultIndex)};
    list->Change(key, back.file, back.index);
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
    const std::string empty = list->ItemCaption(kRecycleEmptyKey);
    text = empty.substr(0, empty.size() > 8 ? empty.size() - 8 : 0);
  }
  const std::optional<std::string> name =
      ui::GetSeam().AskName(host.Owner(), "Type a new name for " + key, text, caption);
  if (!name || name->empty()) return;

  if (IsRecycleBin(key)) {
    list->Change(kRecycleEmptyKey, "", -1, *name + " (empty)");
    list->Change(kRecycleFullKey, "", -1, *name + " (full)");
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
