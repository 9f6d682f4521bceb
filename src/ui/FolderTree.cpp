#include "ui/FolderTree.h"

#include <shellapi.h>

#include <algorithm>
#include <cctype>
#include <unordered_map>
#include <unordered_set>

#include "registry/LaterApi.h"
#include "registry/modRegistry.h"
#include "system/Location.h"

namespace ui {

namespace {

constexpr LPARAM kRemovable = 0x100;        // set in a drive item's lParam beside its letter
const char* const kExplorerAdvanced =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Advanced";

// An empty floppy or CD drive must not make Windows ask the user to insert a disk.
using vx::QuietDriveErrors;

std::string Upper(std::string s) {
  if (!s.empty()) CharUpperBuffA(s.data(), static_cast<DWORD>(s.size()));
  return s;
}

bool SameName(const std::string& a, const std::string& b) { return a.size() == b.size() && Upper(a) == Upper(b); }

std::string Pattern(const std::string& dir) {
  return (!dir.empty() && dir.back() == '\\') ? dir + "*" : dir + "\\*";
}

bool IsDots(const char* name) {
  return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

// Calls f for each visible sub-folder of dir until it returns false.
template <typename F>
void ForEachSubFolder(const std::string& dir, bool showHidden, bool showSuperHidden, F f) {
  QuietDriveErrors quiet;
  WIN32_FIND_DATAA fd;
  HANDLE h = FindFirstFileA(Pattern(dir).c_str(), &fd);
  if (h == INVALID_HANDLE_VALUE) return;
  do {
    if (!(fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) || IsDots(fd.cFileName)) continue;
    if (!FolderVisible(fd.dwFileAttributes, showHidden, showSuperHidden)) continue;
    if (!f(fd.cFileName)) break;
  } while (FindNextFileA(h, &fd));
  FindClose(h);
}

bool HasSubFolders(const std::string& dir, bool showHidden, bool showSuperHidden) {
  bool any = false;
  ForEachSubFolder(dir, showHidden, showSuperHidden, [&](const char*) {
    any = true;
    return false;
  });
  return any;
}

int SystemIcon(const std::string& path, bool open) {
  QuietDriveErrors quiet;
  SHFILEINFOA sfi{};
  UINT flags = SHGFI_SYSICONINDEX | SHGFI_SMALLICON | (open ? SHGFI_OPENICON : 0);
  if (!SHGetFileInfoA(path.c_str(), 0, &sfi, sizeof sfi, flags)) return 0;
  return sfi.iIcon;
}

}  // namespace

bool FolderVisible(DWORD attributes, bool showHidden, bool showSuperHidden) {
  if (!(attributes & FILE_ATTRIBUTE_HIDDEN)) return true;
  if (attributes & FILE_ATTRIBUTE_SYSTEM) return showHidden && showSuperHidden;
  return showHidden;
}

std::vector<std::string> ListSubFolders(const std::string& dir, bool showHidden, bool showSuperHidden) {
  std::vector<std::string> names;
  ForEachSubFolder(dir, showHidden, showSuperHidden, [&](const char* name) {
    names.emplace_back(name);
    return true;
  });
  // The tie-break keeps the order total for names that the locale compares as equal.
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    int c = lstrcmpiA(a.c_str(), b.c_str());
    return c != 0 ? c < 0 : a < b;
  });
  return names;
}

std::string DriveCaption(const std::string& root, const std::string& label) {
  std::string caption = label.empty() ? std::string{} : label + " ";
  caption += '(';
  caption.append(root, 0, 2);
  caption += ')';
  return caption;
}

FolderTree::~FolderTree() {
  if (parent_) later::RemoveWindowSubclass(parent_, &FolderTree::ParentProc, SubclassId());
  if (tree_ && IsWindow(tree_)) DestroyWindow(tree_);
}

bool FolderTree::Create(HWND parent, int id, int x, int y, int w, int h) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                TVS_SHOWSELALWAYS;
  tree_ = CreateWindowExA(WS_EX_CLIENTEDGE, WC_TREEVIEWA, "", style, x, y, w, h, parent,
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
  if (!tree_) return false;
  parent_ = parent;
  // Keyed by this tree, so that two trees on one parent each get their own notifications.
  later::SetWindowSubclass(parent_, &FolderTree::ParentProc, SubclassId(), reinterpret_cast<DWORD_PTR>(this));

  // The shell's own image list: shared by the whole process, so the tree must never destroy it.
  SHFILEINFOA sfi{};
  auto images = reinterpret_cast<HIMAGELIST>(
      SHGetFileInfoA("C:\\", 0, &sfi, sizeof sfi, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
  if (images) TreeView_SetImageList(tree_, images, TVSIL_NORMAL);

  ReadHiddenSettings();
  FillDrives();
  return true;
}

void FolderTree::Move(int x, int y, int w, int h) {
  if (tree_) MoveWindow(tree_, x, y, w, h, TRUE);
}

void FolderTree::ReadHiddenSettings() {
  showHidden_ = modRegistry::GetDword(kExplorerAdvanced, "Hidden") == 1;
  // Windows 95 and 98 know no "protected operating system files": there, showing hidden files shows
  // them all. Later systems store the choice (0 hides them).
  int32_t super = modRegistry::GetDword(kExplorerAdvanced, "ShowSuperHidden");
  showSuperHidden_ = showHidden_ && (super == 1 || super == modRegistry::kDwordError);
}

std::string FolderTree::ItemText(HTREEITEM item) const {
  char buf[MAX_PATH + 1] = {};
  TVITEMA tvi{};
  tvi.mask = TVIF_TEXT;
  tvi.hItem = item;
  tvi.pszText = buf;
  tvi.cchTextMax = sizeof buf;
  TreeView_GetItem(tree_, &tvi);
  return buf;
}

std::string FolderTree::ItemPath(HTREEITEM item) const {
  std::vector<std::string> names;
  for (HTREEITEM parent; (parent = TreeView_GetParent(tree_, item)) != nullptr; item = parent)
    names.push_back(ItemText(item));
  TVITEMA tvi{};
  tvi.mask = TVIF_PARAM;
  tvi.hItem = item;
  if (!TreeView_GetItem(tree_, &tvi)) return {};
  std::string path{static_cast<char>(tvi.lParam & 0xFF), ':', '\\'};
  for (auto it = names.rbegin(); it != names.rend(); ++it) {
    if (path.size() > 3) path += '\\';
    path += *it;
  }
  return path;
}

std::string FolderTree::Path() const {
  if (!tree_) return {};
  HTREEITEM sel = TreeView_GetSelection(tree_);
  return sel ? ItemPath(sel) : std::string{};
}

void FolderTree::FillDrives() {
  char buf[512] = {};
  DWORD n = GetLogicalDriveStringsA(sizeof buf - 1, buf);
  if (n == 0 || n >= sizeof buf) return;

  std::vector<HTREEITEM> kept;
  HTREEITEM after = TVI_FIRST;
  for (const char* root = buf; *root; root += lstrlenA(root) + 1) {
    char letter = static_cast<char>(std::toupper(static_cast<unsigned char>(root[0])));
    UINT type = GetDriveTypeA(root);
    std::string label;
    if (type != DRIVE_REMOVABLE) {  // reading a floppy's label would spin the drive up
      QuietDriveErrors quiet;
      char name[MAX_PATH + 1] = {};
      if (GetVolumeInformationA(root, name, sizeof name, nullptr, nullptr, nullptr, nullptr, 0)) label = name;
    }
    std::string caption = DriveCaption(root, label);

    HTREEITEM item = nullptr;
    for (HTREEITEM r = TreeView_GetRoot(tree_); r; r = TreeView_GetNextSibling(tree_, r)) {
      TVITEMA tvi{};
      tvi.mask = TVIF_PARAM;
      tvi.hItem = r;
      if (TreeView_GetItem(tree_, &tvi) && static_cast<char>(tvi.lParam & 0xFF) == letter) {
        item = r;
        break;
      }
    }
    if (item) {
      TVITEMA tvi{};
      tvi.mask = TVIF_TEXT;
      tvi.hItem = item;
      tvi.pszText = caption.data();
      TreeView_SetItem(tree_, &tvi);
    } else {
      TVINSERTSTRUCTA ins{};
      ins.hParent = TVI_ROOT;
      ins.hInsertAfter = after;
      ins.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_CHILDREN | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
      ins.item.pszText = caption.data();
      ins.item.lParam = static_cast<unsigned char>(letter) | (type == DRIVE_REMOVABLE ? kRemovable : 0);
      // A removable drive is not read until it is opened, so it always offers a "+".
      ins.item.cChildren = type == DRIVE_REMOVABLE ? 1 : I_CHILDRENCALLBACK;
      ins.item.iImage = I_IMAGECALLBACK;
      ins.item.iSelectedImage = I_IMAGECALLBACK;
      item = TreeView_InsertItem(tree_, &ins);
    }
    if (item) {
      kept.push_back(item);
      after = item;
    }
  }
  for (HTREEITEM r = TreeView_GetRoot(tree_); r;) {
    HTREEITEM next = TreeView_GetNextSibling(tree_, r);
    if (std::find(kept.begin(), kept.end(), r) == kept.end()) TreeView_DeleteItem(tree_, r);
    r = next;
  }
}

HTREEITEM FolderTree::FindChild(HTREEITEM parent, const std::string& name) const {
  for (HTREEITEM c = TreeView_GetChild(tree_, parent); c; c = TreeView_GetNextSibling(tree_, c))
    if (SameName(ItemText(c), name)) return c;
  return nullptr;
}

void FolderTree::ResetDisplay(HTREEITEM item) {
  TVITEMA tvi{};
  tvi.mask = TVIF_PARAM;
  tvi.hItem = item;
  TreeView_GetItem(tree_, &tvi);
  bool removableRoot = !TreeView_GetParent(tree_, item) && (tvi.lParam & kRemovable);
  tvi.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN;
  tvi.iImage = I_IMAGECALLBACK;
  tvi.iSelectedImage = I_IMAGECALLBACK;
  tvi.cChildren = removableRoot ? 1 : I_CHILDRENCALLBACK;
  TreeView_SetItem(tree_, &tvi);
}

void FolderTree::Forget(HTREEITEM item) {
  for (HTREEITEM c = TreeView_GetChild(tree_, item); c;) {
    HTREEITEM next = TreeView_GetNextSibling(tree_, c);
    TreeView_DeleteItem(tree_, c);
    c = next;
  }
  // Without this flag the next TVM_EXPAND asks again (TVN_ITEMEXPANDING), which reads the folder.
  TVITEMA tvi{};
  tvi.mask = TVIF_STATE;
  tvi.hItem = item;
  tvi.stateMask = TVIS_EXPANDEDONCE | TVIS_EXPANDED;
  tvi.state = 0;
  TreeView_SetItem(tree_, &tvi);
}

void FolderTree::Populate(HTREEITEM item, bool recurse) {
  std::vector<std::string> names = ListSubFolders(ItemPath(item), showHidden_, showSuperHidden_);

  // Children are in the same order as names (both sorted alike), so kept items keep their places
  // and new ones go in after the previous name.
  std::unordered_map<std::string, HTREEITEM> existing;
  for (HTREEITEM c = TreeView_GetChild(tree_, item); c; c = TreeView_GetNextSibling(tree_, c))
    existing.emplace(Upper(ItemText(c)), c);
  std::vector<HTREEITEM> kept;
  HTREEITEM after = TVI_FIRST;
  for (std::string& name : names) {
    auto found = existing.find(Upper(name));
    HTREEITEM child = nullptr;
    if (found != existing.end()) {
      child = found->second;
      existing.erase(found);  // a second name that differs only in case gets its own item
      if (ItemText(child) != name) {  // renamed in letter case only
        TVITEMA tvi{};
        tvi.mask = TVIF_TEXT;
        tvi.hItem = child;
        tvi.pszText = name.data();
        TreeView_SetItem(tree_, &tvi);
      }
    } else {
      TVINSERTSTRUCTA ins{};
      ins.hParent = item;
      ins.hInsertAfter = after;
      ins.item.mask = TVIF_TEXT | TVIF_CHILDREN | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
      ins.item.pszText = name.data();
      ins.item.cChildren = I_CHILDRENCALLBACK;
      ins.item.iImage = I_IMAGECALLBACK;
      ins.item.iSelectedImage = I_IMAGECALLBACK;
      ins.item.lParam = 0;
      child = TreeView_InsertItem(tree_, &ins);
      if (!child) continue;
    }
    kept.push_back(child);
    after = child;
  }
  std::unordered_set<HTREEITEM> keep(kept.begin(), kept.end());
  for (HTREEITEM c = TreeView_GetChild(tree_, item); c;) {
    HTREEITEM next = TreeView_GetNextSibling(tree_, c);
    if (!keep.count(c)) TreeView_DeleteItem(tree_, c);
    c = next;
  }
  if (!recurse) return;

  for (HTREEITEM c : kept) {
    // Asked afresh each time: reading a sibling may have deleted the selected item.
    HTREEITEM sel = TreeView_GetSelection(tree_);
    bool holdsSelection = false;
    for (HTREEITEM s = sel ? TreeView_GetParent(tree_, sel) : nullptr; s; s = TreeView_GetParent(tree_, s))
      if (s == c) holdsSelection = true;
    bool expanded = (TreeView_GetItemState(tree_, c, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
    if (expanded || holdsSelection)
      Populate(c, true);
    else if (TreeView_GetChild(tree_, c))
      Forget(c);
    ResetDisplay(c);
  }
}

bool FolderTree::SetPath(const std::string& path) {
  if (!tree_ || path.size() < 2 || path[1] != ':') return false;
  char letter = static_cast<char>(std::toupper(static_cast<unsigned char>(path[0])));
  std::vector<std::string> parts;
  std::string part;
  for (size_t i = 2; i <= path.size(); ++i) {
    char ch = i < path.size() ? path[i] : '\\';
    if (ch == '\\' || ch == '/') {
      if (!part.empty()) parts.push_back(part);
      part.clear();
    } else {
      part += ch;
    }
  }

  auto findRoot = [&]() -> HTREEITEM {
    for (HTREEITEM r = TreeView_GetRoot(tree_); r; r = TreeView_GetNextSibling(tree_, r)) {
      TVITEMA tvi{};
      tvi.mask = TVIF_PARAM;
      tvi.hItem = r;
      if (TreeView_GetItem(tree_, &tvi) && static_cast<char>(tvi.lParam & 0xFF) == letter) return r;
    }
    return nullptr;
  };
  HTREEITEM item = findRoot();
  if (!item) {  // a drive mapped since the tree was filled
    FillDrives();
    item = findRoot();
  }
  if (!item) return false;

  // Find the whole chain first, so that a path that is not there leaves the tree as it was shown.
  std::vector<HTREEITEM> chain{item};
  for (const std::string& name : parts) {
    HTREEITEM child = TreeView_GetChild(tree_, item) ? FindChild(item, name) : nullptr;
    if (!child) {  // not read yet, or created since
      Populate(item, false);
      child = FindChild(item, name);
    }
    if (!child) return false;
    item = child;
    chain.push_back(item);
  }
  for (size_t i = 0; i + 1 < chain.size(); ++i) TreeView_Expand(tree_, chain[i], TVE_EXPAND);
  TreeView_SelectItem(tree_, item);
  TreeView_EnsureVisible(tree_, item);
  return true;
}

void FolderTree::Refresh() {
  if (!tree_) return;
  std::string before = Path();
  ReadAgain();
  InvalidateRect(tree_, nullptr, TRUE);
  if (Path() != before && Click) Click();
}

void FolderTree::ReadAgain() {
  struct Quiet {  // no Click while items come and go; Refresh reports the outcome once
    int& n;
    explicit Quiet(int& count) : n(count) { ++n; }
    ~Quiet() { --n; }
  } quiet(quiet_);

  std::string before = Path();
  ReadHiddenSettings();
  FillDrives();
  for (HTREEITEM r = TreeView_GetRoot(tree_); r; r = TreeView_GetNextSibling(tree_, r)) {
    HTREEITEM sel = TreeView_GetSelection(tree_);
    HTREEITEM selRoot = sel;
    while (selRoot && TreeView_GetParent(tree_, selRoot)) selRoot = TreeView_GetParent(tree_, selRoot);
    bool expanded = (TreeView_GetItemState(tree_, r, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
    if (expanded || (r == selRoot && sel != r))
      Populate(r, true);
    else if (TreeView_GetChild(tree_, r))
      Forget(r);
    ResetDisplay(r);
  }
  // A selected folder that has gone gives way to the nearest folder above it that is still there.
  if (!before.empty() && Path() != before) {
    std::string p = before;
    while (!SetPath(p) && p.size() > 3) {
      size_t cut = p.find_last_of('\\');
      p = cut <= 2 ? p.substr(0, 3) : p.substr(0, cut);
    }
  }
}

bool FolderTree::HandleNotify(const NMHDR* hdr, LRESULT& result) {
  if (!tree_ || !hdr || hdr->hwndFrom != tree_) return false;
  switch (hdr->code) {
    case TVN_GETDISPINFOA:
    case TVN_GETDISPINFOW: {
      // Only children and images are asked for; those fields lie alike in the ANSI and wide forms.
      auto* di = reinterpret_cast<NMTVDISPINFOA*>(const_cast<NMHDR*>(hdr));
      TVITEMA& it = di->item;
      std::string path = ItemPath(it.hItem);
      if (it.mask & TVIF_CHILDREN) it.cChildren = HasSubFolders(path, showHidden_, showSuperHidden_) ? 1 : 0;
      if (it.mask & TVIF_IMAGE) it.iImage = SystemIcon(path, false);
      if (it.mask & TVIF_SELECTEDIMAGE) it.iSelectedImage = SystemIcon(path, path.size() > 3);
      it.mask |= TVIF_DI_SETITEM;  // keep the answers: they are asked for again only after a Refresh
      result = 0;
      return true;
    }
    case TVN_ITEMEXPANDINGA:
    case TVN_ITEMEXPANDINGW: {
      auto* nm = reinterpret_cast<const NMTREEVIEWA*>(hdr);
      HTREEITEM item = nm->itemNew.hItem;
      result = FALSE;
      if ((nm->action & TVE_EXPAND) && !TreeView_GetChild(tree_, item)) {
        Populate(item, false);
        if (!TreeView_GetChild(tree_, item)) {
          // Nothing inside after all (an empty floppy, a folder emptied meanwhile): drop the "+".
          TVITEMA tvi{};
          tvi.mask = TVIF_CHILDREN;
          tvi.hItem = item;
          tvi.cChildren = 0;
          TreeView_SetItem(tree_, &tvi);
          result = TRUE;
        }
      }
      return true;
    }
    case TVN_SELCHANGEDA:
    case TVN_SELCHANGEDW:
      if (quiet_ == 0 && Click) Click();
      result = 0;
      return true;
    default:
      return false;
  }
}

LRESULT CALLBACK FolderTree::ParentProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                        DWORD_PTR self) noexcept {
  auto* tree = reinterpret_cast<FolderTree*>(self);
  try {
    if (msg == WM_NOTIFY) {
      LRESULT result = 0;
      if (tree->HandleNotify(reinterpret_cast<const NMHDR*>(lp), result)) return result;
    } else if (msg == WM_NCDESTROY) {
      // The parent takes the tree with it.
      later::RemoveWindowSubclass(hwnd, &FolderTree::ParentProc, id);
      tree->parent_ = nullptr;
      tree->tree_ = nullptr;
    }
  } catch (...) {
    // Nothing may unwind through user32; the message goes on to the parent unanswered.
  }
  return later::DefSubclassProc(hwnd, msg, wp, lp);
}

}  // namespace ui
