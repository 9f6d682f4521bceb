#pragma once
// FolderTree: the Explorer tab's tree of drives and folders. A common-controls tree view whose items
// are the drive roots and, read when a node is first expanded, their sub-folders (directories only,
// sorted case-insensitively, hidden ones only as the user's Explorer settings show them). Icons come
// from the system image list, so a folder that has its own icon shows it.
//
// Notifications: the tree view reports to its parent with WM_NOTIFY. The tree subclasses its parent
// (SetWindowSubclass) and takes its own notifications there, so the parent needs to forward nothing;
// every other message, including other controls' WM_NOTIFY, reaches the parent as before.
#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

namespace ui {

// One entry of a folder listing.
struct FolderEntry {
  std::string name;
  DWORD attributes = 0;
};

// Whether a folder with these attributes is listed, given the user's "show hidden files" and "show
// protected operating system files" choices. Folders that are system but not hidden always show.
bool FolderVisible(DWORD attributes, bool showHidden, bool showSuperHidden);
// The names of the folders directly inside dir (a drive root "C:\" or a folder without a trailing
// backslash) that are visible, sorted case-insensitively.
std::vector<std::string> ListSubFolders(const std::string& dir, bool showHidden, bool showSuperHidden);
// A drive's caption: "(C:)" or, with a volume label, "System (C:)". root is "C:\".
std::string DriveCaption(const std::string& root, const std::string& label);

class FolderTree {
 public:
  FolderTree() = default;
  ~FolderTree();
  FolderTree(const FolderTree&) = delete;
  FolderTree& operator=(const FolderTree&) = delete;

  // Creates the tree view as a child of parent and fills in the drives.
  bool Create(HWND parent, int id, int x, int y, int w, int h);
  HWND hwnd() const { return tree_; }
  void Move(int x, int y, int w, int h);

  // The selected folder's full path: a drive root is exactly "C:\", a folder has no trailing
  // backslash; "" when nothing is selected.
  std::string Path() const;
  // Expands the tree down to path and selects it (raising Click when the selection changes). A
  // trailing backslash and the letter case do not matter. False when the path is not in the tree
  // (no such folder, or a hidden one that is not shown); the selection is then left as it was.
  bool SetPath(const std::string& path);
  // Reads the drives and every expanded folder again: new folders appear, deleted ones go, icons are
  // read again. Selection and expanded nodes stay where their folders still exist; Click is raised
  // once at the end only when the selected path changed.
  void Refresh();

  // Raised when the selection changes (by the user, SetPath or a Refresh that lost the selection).
  std::function<void()> Click;

  // The tree's part of the parent's WM_NOTIFY, called by the subclass. Returns true and sets result
  // for the tree's own notifications; false for anything else.
  bool HandleNotify(const NMHDR* hdr, LRESULT& result);

 private:
  static LRESULT CALLBACK ParentProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                     DWORD_PTR self) noexcept;
  void FillDrives();
  std::string ItemPath(HTREEITEM item) const;
  std::string ItemText(HTREEITEM item) const;
  // Reads the sub-folders of item and merges them into its children; recurses into expanded ones.
  void Populate(HTREEITEM item, bool recurse);
  // Forgets the children of a collapsed node so that its next expansion reads them anew.
  void Forget(HTREEITEM item);
  // Refresh without its Click.
  void ReadAgain();
  HTREEITEM FindChild(HTREEITEM parent, const std::string& name) const;
  void ResetDisplay(HTREEITEM item);
  void ReadHiddenSettings();
  UINT_PTR SubclassId() const { return reinterpret_cast<UINT_PTR>(this); }

  HWND tree_ = nullptr;
  HWND parent_ = nullptr;
  bool showHidden_ = false;
  bool showSuperHidden_ = false;
  int quiet_ = 0;  // while > 0 selection changes raise no Click
};

}  // namespace ui
