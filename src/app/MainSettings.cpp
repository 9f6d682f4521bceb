// The Shell tab's wiring, and the Tools menu's three Restore all commands.
#include "app/Main.h"

#include "resource.h"
#include "ui/modMsgbox.h"

namespace vx {

void Main::CreateSettingsPage() {
  SettingsTree::Host host;
  host.owner = hwnd();
  host.env = &env_;
  host.flags = &flags;
  host.enableApply = [this] { EnableApply(); };
  settings_ = std::make_unique<SettingsTree>(std::move(host));
  settings_->Create(pane_, IDC_SETTINGS_PAGE, font_);
  settings_->page().SetBackdrop(tab_);
  settingsTree_ = settings_->page().tree();
}

void Main::FillSettingsTree() { settings_->Fill(CurrentScreen()); }

Plan Main::SettingsStage() { return BuildSettingsPlan(settings_->model(), env_, CurrentTab()); }

void Main::RestoreAllSettings() {
  if (modMsgbox::RestoreAllSettings(env_.editionName) != modMsgbox::Confirm::OK) return;
  ui::DoEvents();
  ui::MousePointer wait(ui::MousePointer::kHourglass);
  // The Shell tab comes to the front, so the restored states are what the person sees (its first
  // visit fills the tree).
  SelectTab(kTabShell);
  if (!flags.treeFilled) FillSettingsTree();
  settings_->Restore();
  flags.rebuildCachePending = true;
  EnableApply();
}

void Main::RestoreTab(int tab) {
  SelectTab(tab);
  ui::ListBoxIcons* list = List(tab);
  if (!list) return;
  const int remembered = static_cast<int>(list->ListIndex());
  for (int i = 0; i < list->Count(); ++i) {
    list->SelItemIndex(static_cast<int16_t>(i));
    cmdDefault_Click(*this);
  }
  list->SelItemIndex(static_cast<int16_t>(remembered));
  lstbxIcons_Click(*this, tab);
}

void Main::RestoreAllIcons() {
  if (modMsgbox::RestoreAllIcons(env_.editionName) != modMsgbox::Confirm::OK) return;
  ui::DoEvents();  // the prompt goes away before the work starts
  ui::MousePointer wait(ui::MousePointer::kArrowHourglass);
  const int tab = CurrentTab();
  for (int t = kTabDesktop; t <= kTabSystem; ++t) RestoreTab(t);
  SelectTab(tab);
  SetCurrentTheme("");
  flags.rebuildCachePending = true;
  EnableApply();
}

void Main::RestoreAllPointers() {
  if (modMsgbox::RestoreAllPointers(env_.editionName) != modMsgbox::Confirm::OK) return;
  ui::DoEvents();
  ui::MousePointer wait(ui::MousePointer::kArrowHourglass);
  const int tab = CurrentTab();
  // Pointers need no icon cache rebuild, though Default Icon asks for one.
  const bool rebuild = flags.rebuildCachePending;
  RestoreTab(kTabPointers);
  flags.rebuildCachePending = rebuild;
  SelectTab(tab);
  EnableApply();
}

}  // namespace vx
