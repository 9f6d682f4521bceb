#include "settings/SettingsTree.h"

#include <map>

#include "registry/modRegistry.h"
#include "system/Keys.h"
#include "ui/frmPrompt.h"
#include "ui/seam.h"

namespace vx {

SettingsTree::SettingsTree(Host host) : host_(std::move(host)) {}

bool SettingsTree::Create(HWND parent, int id, HFONT font) {
  if (!page_.Create(parent, id, font)) return false;
  page_.DblClick = [this] { tvwShell_DblClick(); };
  page_.SpaceKey = [this] { tvwShell_KeyPress(' '); };
  page_.NodeClick = [this] { tvwShell_NodeClick(); };
  page_.ScrollChange = [this] { scrollShell_Change(); };
  page_.TextKeyUp = [this] { SystemText_KeyUp(); };
  page_.ContextMenu = [this](POINT at) { ShowMenu(at); };
  return true;
}

void SettingsTree::Beep() {
  if (host_.beep)
    host_.beep();
  else
    MessageBeep(MB_OK);
}

// --- filling and restoring ----------------------------------------------------------------------------

void SettingsTree::Fill(const ScreenInfo& screen) {
  model_ = ReadSettings(*host_.env, screen);
  items_.clear();
  std::map<std::string, HTREEITEM> byKey;
  // One redraw for the whole fill rather than one per node.
  SendMessageA(page_.tree(), WM_SETREDRAW, FALSE, 0);
  for (size_t i = 0; i < model_.nodes.size(); ++i) {
    const SystemSetting& n = model_.nodes[i];
    auto parent = byKey.find(n.parent);
    HTREEITEM item = page_.AddNode(parent == byKey.end() ? TVI_ROOT : parent->second, n.text, n.image,
                                   static_cast<LPARAM>(i));
    items_.push_back(item);
    byKey[n.key] = item;
  }
  SendMessageA(page_.tree(), WM_SETREDRAW, TRUE, 0);
  // The node selected when the program last closed; a key that names no node here (an Active Desktop
  // setting on a system without the desktop update) selects nothing.
  const std::string selected = modRegistry::GetString(kSettingsKey, "Selected");
  if (selected != modRegistry::kError) SelectKey(selected);
  page_.Filled();
  host_.flags->treeFilled = true;
}

void SettingsTree::Restore() {
  RestoreSettings(model_);
  for (const SystemSetting& n : model_.nodes) Show(n.key);
  if (IsWindowVisible(page_.hwnd()) && page_.Selected()) tvwShell_NodeClick();
}

std::string SettingsTree::SelectedKey() const {
  const LPARAM i = page_.DataOf(page_.Selected());
  if (i < 0 || static_cast<size_t>(i) >= model_.nodes.size()) return "";
  return model_.nodes[static_cast<size_t>(i)].key;
}

HTREEITEM SettingsTree::Item(const std::string& key) const {
  for (size_t i = 0; i < model_.nodes.size() && i < items_.size(); ++i)
    if (model_.nodes[i].key == key) return items_[i];
  return nullptr;
}

bool SettingsTree::SelectKey(const std::string& key) {
  HTREEITEM item = Item(key);
  if (!item) return false;
  page_.Select(item);
  return true;
}

void SettingsTree::Show(const std::string& key) {
  if (HTREEITEM item = Item(key)) {
    const int image = model_.Image(key);
    // A group's picture follows its expansion on the page; the model keeps 1 for it.
    if (image != kImageGroup) page_.SetImage(item, image);
  }
}

// --- toggling -------------------------------------------------------------------------------------

bool SettingsTree::ToggleSelected() {
  const std::string key = SelectedKey();
  if (!ToggleSetting(model_, key, *host_.env, *host_.flags)) return false;
  Show(key);
  if (key == kDelayUntilClickedKey) Show(kMenuShowDelayKey);
  if (host_.enableApply) host_.enableApply();
  return true;
}

void SettingsTree::tvwShell_KeyPress(int charCode) {
  if (charCode == ' ') ToggleSelected();
}

// --- the numeric editor -------------------------------------------------------------------------------

void SettingsTree::tvwShell_NodeClick() {
  scrollGuard_ = false;
  const std::string key = SelectedKey();
  const SystemSetting* node = model_.Find(key);
  if (model_.IsNumeric(key)) {
    page_.SetUnit(node->row->unit);
    // Raises the scroll bar's change, which copies the value into the text box; the cleared guard
    // keeps that from counting as an edit.
    page_.SetScrollValue(TypedNumber(model_.Value(key)).value_or(0));
  }
  page_.ShowEditor(node && node->image == kImageNumber, key);
}

void SettingsTree::scrollShell_Change() {
  const int value = page_.ScrollValue();
  const std::string key = SelectedKey();
  if (!model_.IsNumeric(key)) {
    page_.SetText(std::to_string(value));
    return;
  }
  if (!scrollGuard_) {
    // Showing the node's value, not an edit: the value stays as read (out of bounds or not) until the
    // user changes it, so an Apply writes nothing the user did not ask for.
    page_.SetText(std::to_string(TypedNumber(model_.Value(key)).value_or(value)));
    scrollGuard_ = true;
    return;
  }
  const Bounded bounded = BoundValue(model_, key, value);
  if (bounded.value != value) {
    if (bounded.beep) Beep();
    page_.SetScrollValue(bounded.value);  // comes back here with the bound
    return;
  }
  const std::string text = std::to_string(value);
  model_.values[key] = text;
  // A typed number already stands in the box as typed: rewriting and selecting it would make the next
  // digit replace it, so only a value the box does not show yet goes in.
  if (page_.Text() != text) page_.SetText(text);
  if (scrollGuard_) {
    if (key == kMenuShowDelayKey) host_.flags->restartNeeded = true;
    if (host_.enableApply) host_.enableApply();
  }
  scrollGuard_ = true;
}

void SettingsTree::SystemText_KeyUp() {
  const std::string shown = page_.Text();
  const std::optional<int> n = shown.empty() ? std::optional<int>(0) : TypedNumber(shown);
  if (!n || *n >= 32767) {
    Beep();
    page_.UndoText();
    return;
  }
  // A key that typed nothing (Tab into the box, an arrow) is no edit.
  const std::string key = SelectedKey();
  if (!shown.empty() && model_.IsNumeric(key) && model_.Value(key) == shown) return;
  page_.SetScrollValue(*n);
}

// --- the right-click menu ------------------------------------------------------------------------------

std::string SettingsTree::StateCaption(const std::string& key) const {
  const SystemSetting* n = model_.Find(key);
  if (!n) return "&Toggle";
  switch (n->row->kind) {
    case NodeKind::Number: return "Cha&nge";
    case NodeKind::Switch: return "&Toggle";
    case NodeKind::Group: {
      HTREEITEM item = Item(key);
      return item && page_.Expanded(item) ? "Colla&pse" : "&Expand";
    }
  }
  return "&Toggle";
}

bool SettingsTree::StateEnabled(const std::string& key) const {
  const SystemSetting* n = model_.Find(key);
  if (!n) return false;
  switch (n->image) {
    case kImageOff:
    case kImageOn:
    case kImageNumber: return true;
    case kImageGroup:
    case kImageGroupOpen: return page_.HasChildren(Item(key));
    default: return false;  // an overridden delay, an unavailable Plus! setting
  }
}

void SettingsTree::ShowMenu(POINT screen) {
  const std::string key = SelectedKey();
  const int chosen = page_.ShowMenu(screen, StateCaption(key), StateEnabled(key));
  if (chosen >= 0) mnuRClickItem_Click(chosen);
}

void SettingsTree::mnuRClickItem_Click(int index) {
  const std::string key = SelectedKey();
  switch (index) {
    case ui::SettingsPage::kWhatsThis:
      ui::GetSeam().OpenHelp(host_.owner, ui::AppHelpFile(), HELP_CONTEXTPOPUP,
                             std::to_string(host_.env ? HelpNumber(key, *host_.env) : HelpNumber(key)));
      break;
    case ui::SettingsPage::kStateItem: {
      if (!StateEnabled(key)) break;
      const SystemSetting* n = model_.Find(key);
      if (n->row->kind == NodeKind::Switch) {
        ToggleSelected();
      } else if (n->row->kind == NodeKind::Number) {
        page_.FocusText();
      } else if (HTREEITEM item = Item(key)) {
        page_.Expand(item, !page_.Expanded(item));
      }
      break;
    }
    case ui::SettingsPage::kExpandAll: page_.ExpandAll(true); break;
    case ui::SettingsPage::kCollapseAll: page_.ExpandAll(false); break;
    default: break;
  }
}

}  // namespace vx
