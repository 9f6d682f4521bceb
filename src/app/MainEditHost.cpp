// The main window as the edit commands see it (EditHost), and the Explorer tab's selection.
#include "app/Main.h"

#include "icons/FolderIcons.h"
#include "icons/Refresh.h"
#include "resource.h"

namespace vx {

// --- the Explorer tab ------------------------------------------------------------------------------------

void Main::lstbxExplorer_Click() {
  const std::string path = folderTree_.Path();
  if (path.find(':') == std::string::npos) {
    SetInfoBar("");
    return;
  }
  SetInfoBar(FolderIconInfo(path, env_.systemFolder));
}

// --- EditHost ------------------------------------------------------------------------------------------

ui::ListBoxIcons* Main::List(int tab) {
  if (tab < 0 || tab >= static_cast<int>(lists_.size())) return nullptr;
  return lists_[static_cast<size_t>(tab)].get();
}

std::string Main::InfoBar() { return ui::GetText(control(IDC_INFOBAR)); }
void Main::SetInfoBar(const std::string& text) { ui::SetText(control(IDC_INFOBAR), text); }
void Main::EnableDefault(bool on) { EnableWindow(GetDlgItem(pane_, IDC_DEFAULT), on); }
void Main::EnableRename(bool on) { EnableWindow(GetDlgItem(pane_, IDC_RENAME), on); }
void Main::EnableApply() { EnableWindow(control(IDC_APPLY), TRUE); }
std::string Main::ExplorerPath() { return folderTree_.hwnd() ? folderTree_.Path() : std::string(); }
void Main::RefreshFolderTree() {
  if (folderTree_.hwnd()) folderTree_.Refresh();
}
void Main::FocusFolderTree() {
  if (folderTree_.hwnd()) SetFocus(folderTree_.hwnd());
}
void Main::RebuildIconCache() { vx::RebuildIconCache(env_, flags, [this] { RefreshFolderTree(); }); }

}  // namespace vx
