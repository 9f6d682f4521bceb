#pragma once
// The Shell tab: the settings model shown on the settings page, and the page's events turned into
// edits of the model. The page's node images are always the model's images (every edit goes to the
// model first and is then shown), so what Apply reads is what the person sees.
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "apply/RunFlags.h"
#include "settings/Settings.h"
#include "system/Environment.h"
#include "ui/SettingsPage.h"

namespace vx {

class SettingsTree {
 public:
  // What the tree needs from the main window.
  struct Host {
    HWND owner = nullptr;
    const Environment* env = nullptr;
    RunFlags* flags = nullptr;
    std::function<void()> enableApply;
    std::function<void()> beep;  // MessageBeep when not given
  };

  explicit SettingsTree(Host host);
  bool Create(HWND parent, int id, HFONT font);
  ui::SettingsPage& page() { return page_; }
  const SettingsModel& model() const { return model_; }

  // Fills the tree from the registry (once per run: it sets the tree-filled flag), restores the node
  // recorded as "Selected" and turns on the track-select style.
  void Fill(const ScreenInfo& screen);
  // Restore all Settings on a filled tree: the restore images and values, and the numeric read-out
  // of the selected node refreshed when the page is on show.
  void Restore();

  int NodeCount() const { return static_cast<int>(items_.size()); }
  std::string SelectedKey() const;   // "" when nothing is selected
  bool SelectKey(const std::string& key);
  HTREEITEM Item(const std::string& key) const;

  // --- events of the page ------------------------------------------------------------------------
  void tvwShell_DblClick() { ToggleSelected(); }
  void tvwShell_KeyPress(int charCode);
  void tvwShell_NodeClick();
  void scrollShell_Change();
  void SystemText_KeyUp();
  // The right-click menu: the state item's caption and state for a node, and a chosen item.
  std::string StateCaption(const std::string& key) const;
  bool StateEnabled(const std::string& key) const;
  void mnuRClickItem_Click(int index);

  bool ToggleSelected();  // true when the setting changed

 private:
  void ShowMenu(POINT screen);
  void Show(const std::string& key);  // the node's image on the page = the model's
  void Beep();

  Host host_;
  ui::SettingsPage page_;
  SettingsModel model_;
  std::vector<HTREEITEM> items_;  // by model node index
  bool scrollGuard_ = false;      // false while the program itself sets the scroll bar
};

}  // namespace vx
