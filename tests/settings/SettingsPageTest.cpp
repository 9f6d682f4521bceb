// The Shell tab's page in a real window, driven by the messages a mouse and a keyboard send.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <set>

#include "resource.h"
#include "settings/SettingsFixture.h"
#include "settings/SettingsTree.h"
#include "support/ScriptedSeam.h"
#include "ui/frmPrompt.h"
#include "ui/win.h"

namespace {

using namespace vx;

class Page : public ::testing::Test {
 protected:
  void SetUp() override {
    INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_TREEVIEW_CLASSES};
    InitCommonControlsEx(&icc);
    modRegistry::SaveString(kDesktopKey, "DoubleClickWidth", "4");
    modRegistry::SaveString(kDesktopKey, "MenuShowDelay", "400");
    modRegistry::DeleteValue(kSettingsKey, "Selected");
    host_.Create("VxSettingsPageTest", 0, WS_OVERLAPPEDWINDOW | WS_VISIBLE, "", 0, 0, 600, 420, nullptr, nullptr);
    env = MakeEnvironment("Win98", "C:\\windows", "C:\\windows\\system32", "4.70", true, "C:\\vx.exe");
    tree = std::make_unique<SettingsTree>(SettingsTree::Host{
        host_.hwnd(), &env, &flags, [this] { ++applies; }, [this] { ++beeps; }});
    ASSERT_TRUE(tree->Create(host_.hwnd(), IDC_SETTINGS_PAGE, nullptr));
    tree->page().Move(8, 8, 520, 340);
    ShowWindow(tree->page().hwnd(), SW_SHOW);
    tree->Fill(ScreenInfo{32, 800, 600});
  }
  void TearDown() override { tree.reset(), host_.Destroy(); }

  ui::SettingsPage& page() { return tree->page(); }
  HWND treeView() { return page().tree(); }
  void Key(HWND to, WPARAM vk) {
    SendMessageA(to, WM_KEYDOWN, vk, 0);
    SendMessageA(to, WM_KEYUP, vk, 0xC0000000);
  }
  // Typing over the whole text box: each character, then its key going up.
  void SelectAllAndType(const std::string& chars) {
    SendMessageA(page().textBox(), EM_SETSEL, 0, -1);
    for (char ch : chars) {
      SendMessageA(page().textBox(), WM_CHAR, static_cast<WPARAM>(ch), 0);
      SendMessageA(page().textBox(), WM_KEYUP, 'A', 0xC0000000);
    }
  }
  void Scroll(WPARAM code) { SendMessageA(page().hwnd(), WM_VSCROLL, code, reinterpret_cast<LPARAM>(page().scrollBar())); }
  int TreeHeightTwips() {
    RECT r;
    GetWindowRect(treeView(), &r);
    return (r.bottom - r.top) * ui::TwipsPerPixelY();
  }
  // Every node's image on the page is the model's (groups show 1 or 2 as they are expanded).
  void ExpectShownIsModel() {
    for (const SystemSetting& n : tree->model().nodes) {
      const int shown = page().ImageOf(tree->Item(n.key));
      EXPECT_EQ(n.image == kImageGroup && shown == kImageGroupOpen ? kImageGroup : shown, n.image) << n.key;
    }
  }

  vxtest::SettingsScope scope;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  Environment env;
  RunFlags flags;
  int applies = 0, beeps = 0;
  std::unique_ptr<SettingsTree> tree;

 private:
  ui::Window host_;
};

TEST_F(Page, TogglesByDoubleClickSpaceAndTheMenuShowTheModel) {
  ExpectShownIsModel();
  EXPECT_TRUE(flags.treeFilled);
  EXPECT_TRUE(GetWindowLongPtrA(treeView(), GWL_STYLE) & TVS_TRACKSELECT);
  const int before = tree->model().Image("Smooth Scrolling");
  ASSERT_TRUE(tree->SelectKey("Smooth Scrolling"));
  // A real double-click on the node's text.
  RECT r{};
  TreeView_GetItemRect(treeView(), tree->Item("Smooth Scrolling"), &r, TRUE);
  const LPARAM at = MAKELPARAM(r.left + 4, (r.top + r.bottom) / 2);
  SendMessageA(treeView(), WM_LBUTTONDOWN, MK_LBUTTON, at);
  SendMessageA(treeView(), WM_LBUTTONUP, 0, at);
  SendMessageA(treeView(), WM_LBUTTONDBLCLK, MK_LBUTTON, at);
  SendMessageA(treeView(), WM_LBUTTONUP, 0, at);
  EXPECT_NE(tree->model().Image("Smooth Scrolling"), before);
  EXPECT_EQ(applies, 1);
  Key(treeView(), VK_SPACE);
  EXPECT_EQ(tree->model().Image("Smooth Scrolling"), before);
  tree->mnuRClickItem_Click(ui::SettingsPage::kStateItem);
  EXPECT_NE(tree->model().Image("Smooth Scrolling"), before);
  EXPECT_EQ(applies, 3);
  ExpectShownIsModel();

  // Groups and numbers do not toggle.
  tree->SelectKey("General");
  Key(treeView(), VK_SPACE);
  tree->SelectKey("Drag Width");
  tree->tvwShell_DblClick();
  EXPECT_EQ(applies, 3);
  ExpectShownIsModel();
}

TEST_F(Page, TheNumericEditorBoundsBeepsUndoesAndGuards) {
  ASSERT_TRUE(tree->SelectKey("Double Click Width"));
  EXPECT_TRUE(page().EditorShown());
  EXPECT_TRUE(IsWindowVisible(page().frame()));
  EXPECT_EQ(ui::GetText(page().frame()), "Double Click Width");
  EXPECT_EQ(ui::GetText(page().unitLabel()), "pixels");
  EXPECT_EQ(page().Text(), "4");
  EXPECT_NEAR(TreeHeightTwips(), 2690, ui::TwipsPerPixelY());
  EXPECT_EQ(applies, 0);  // a click alone is no edit

  // Typed over the whole text: what the box and the model show, and the beeps.
  const struct { const char *typed, *shown; int beeps; } steps[] = {{"40", "32", 1}, {"0", "1", 0}, {"x", "1", 1}, {"7", "7", 0}};
  for (const auto& s : steps) {
    beeps = 0;
    SelectAllAndType(s.typed);
    EXPECT_EQ(page().Text(), s.shown) << s.typed;
    EXPECT_EQ(tree->model().Value("Double Click Width"), s.shown) << s.typed;
    EXPECT_EQ(beeps, s.beeps) << s.typed;
  }
  EXPECT_GT(applies, 0);
  // 32767 and more are refused with a beep and the edit undone.
  beeps = 0;
  SendMessageA(page().textBox(), EM_SETSEL, 0, -1);
  SendMessageA(page().textBox(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>("32767"));
  SendMessageA(page().textBox(), WM_KEYUP, '7', 0xC0000000);
  EXPECT_EQ(page().Text(), "7");
  EXPECT_EQ(beeps, 1);

  // The scroll bar: its upper arrow adds one, and a move after the click enables Apply.
  tree->SelectKey("Double Click Speed");
  EXPECT_EQ(ui::GetText(page().unitLabel()), "milliseconds");
  applies = 0;
  Scroll(SB_LINEUP);
  EXPECT_EQ(tree->model().Value("Double Click Speed"), "501");
  EXPECT_EQ(page().Text(), "501");
  EXPECT_EQ(applies, 1);
  Scroll(SB_PAGEUP);
  EXPECT_EQ(page().Text(), "511");
  for (int i = 0; i < 40; ++i) Scroll(SB_PAGEUP);
  EXPECT_EQ(page().Text(), "900");

  // Any change of the delay asks for a restart; the click on it alone does not.
  EXPECT_FALSE(flags.restartNeeded);
  tree->SelectKey(kMenuShowDelayKey);
  EXPECT_FALSE(flags.restartNeeded);
  Scroll(SB_LINEDOWN);
  EXPECT_TRUE(flags.restartNeeded);
  EXPECT_EQ(tree->model().Value(kMenuShowDelayKey), "399");

  // "Delay Until Clicked" overrides the delay: its node shows 4 and opens no editor.
  tree->SelectKey(kDelayUntilClickedKey);
  EXPECT_FALSE(page().EditorShown());
  EXPECT_NEAR(TreeHeightTwips(), 3450, ui::TwipsPerPixelY());
  Key(treeView(), VK_SPACE);
  EXPECT_EQ(page().ImageOf(tree->Item(kMenuShowDelayKey)), kImageNumberOverridden);
  tree->SelectKey(kMenuShowDelayKey);
  EXPECT_FALSE(page().EditorShown());
  EXPECT_EQ(tree->StateCaption(kMenuShowDelayKey), "Cha&nge");
  EXPECT_FALSE(tree->StateEnabled(kMenuShowDelayKey));
  ExpectShownIsModel();
}

TEST_F(Page, TheRightClickMenuAndWhatsThis) {
  HMENU menu = page().BuildMenu("&Toggle", true);
  const char* items[] = {"&What's This?", "", "&Toggle", "", "Expand &All", "&Collapse All"};
  ASSERT_EQ(GetMenuItemCount(menu), 6);
  for (int i = 0; i < 6; ++i) {
    char text[64] = {};
    GetMenuStringA(menu, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
    EXPECT_STREQ(text, items[i]) << i;
  }
  DestroyMenu(menu);

  const struct { const char *key, *caption, *help; } cases[] = {{"Beep On Errors", "&Toggle", "23"}, {"Drag Width", "Cha&nge", "42"}, {"Double Click", "&Expand", "0"},
               {"Wallpaper", "&Expand", "58"},      {"Restore Active Tab", "&Toggle", "61"}};
  for (const auto& c : cases) {
    tree->SelectKey(c.key);
    EXPECT_EQ(tree->StateCaption(c.key), c.caption) << c.key;
    seam.helpCalls.clear();
    tree->mnuRClickItem_Click(ui::SettingsPage::kWhatsThis);
    ASSERT_EQ(seam.helpCalls.size(), 1u);
    EXPECT_EQ(seam.helpCalls[0].command, static_cast<unsigned>(HELP_CONTEXTPOPUP));
    EXPECT_EQ(seam.helpCalls[0].keyword, c.help) << c.key;
    EXPECT_EQ(seam.helpCalls[0].file, ui::AppHelpFile());
  }
  // The state item of a group expands and collapses it; Expand All and Collapse All reach every group.
  tree->SelectKey("Mouse");
  page().Expand(tree->Item("Mouse"), false);
  EXPECT_EQ(tree->StateCaption("Mouse"), "&Expand");
  tree->mnuRClickItem_Click(ui::SettingsPage::kStateItem);
  EXPECT_EQ(tree->StateCaption("Mouse"), "Colla&pse");
  EXPECT_EQ(page().ImageOf(tree->Item("Mouse")), kImageGroupOpen);
  for (int index : {ui::SettingsPage::kExpandAll, ui::SettingsPage::kCollapseAll}) {
    tree->mnuRClickItem_Click(index);
    for (const SystemSetting& n : tree->model().nodes)
      if (n.row->kind == NodeKind::Group) {
        EXPECT_EQ(page().Expanded(tree->Item(n.key)), index == ui::SettingsPage::kExpandAll) << n.key;
      }
  }
}

TEST_F(Page, EverySettingIsReachedToggledAndEditedByKeys) {
  SetFocus(treeView());
  tree->SelectKey("Options");
  Key(treeView(), VK_HOME);
  EXPECT_EQ(tree->SelectedKey(), "General");
  std::set<std::string> seen;
  for (int presses = 0; presses < 400; ++presses) {
    const std::string key = tree->SelectedKey();
    seen.insert(key);
    HTREEITEM item = tree->Item(key);
    if (page().HasChildren(item) && !page().Expanded(item)) {
      Key(treeView(), VK_RIGHT);  // opens the group
      continue;
    }
    Key(treeView(), VK_DOWN);
    if (tree->SelectedKey() == key) break;  // the last node
  }
  EXPECT_EQ(seen.size(), tree->model().nodes.size());
  // On a numeric node the text box is the next stop of the Tab key.
  tree->SelectKey("Drag Height");
  EXPECT_EQ(GetNextDlgTabItem(page().hwnd(), treeView(), FALSE), page().textBox());
  EXPECT_TRUE(GetWindowLongPtrA(page().scrollBar(), GWL_STYLE) & WS_TABSTOP);
}

}  // namespace
