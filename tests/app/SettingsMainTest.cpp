// The Shell tab in the main window: edits, Apply read back, the Restore all commands, the node recorded.
#include <gtest/gtest.h>
#include <windows.h>

#include "MainWindowFixture.h"
#include "registry/modRegistry.h"
#include "ids_art.h"
#include "resource.h"
#include "settings/SettingsFixture.h"
#include "support/KeySnapshot.h"
#include "ui/ListBoxIcons.h"

namespace {

using namespace vx;

constexpr const char* kVerb = "HKEY_CLASSES_ROOT\\CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\Shell\\VX";

class ShellTab : public vxtest::MainWindowTest {
 protected:
  void SetUp() override {
    modRegistry::SaveString(kWindowMetricsKey, "Shell Icon Size", "32");
    modRegistry::SaveDword(kSettingsKey, "Dialog Rebuild", 1);  // the rebuild notice stays away
  }
  // Selects a node on the Shell tab and toggles it with the space bar, as a person would.
  static void Toggle(Main& m, const std::string& key) {
    m.SelectTab(kTabShell);
    ASSERT_TRUE(m.settingsTree().SelectKey(key)) << key;
    SendMessageA(m.settingsTree().page().tree(), WM_KEYDOWN, VK_SPACE, 0);
  }

  vxtest::SettingsScope scope;
  vxtest::KeySnapshot icons{{kShellIconsKey, kCursorsKey, "HKEY_CLASSES_ROOT\\.bmp", "HKEY_CLASSES_ROOT\\Paint.Picture"}};
};

TEST_F(ShellTab, EachWriteRuleThroughTheWindow) {
  const Environment env = DetectEnvironment();  // Wine's default: the NT platform
  modRegistry::DeleteValue(kExplorerKey, "link");
  modRegistry::SaveString(kDesktopKey, "FontSmoothing", "0");
  modRegistry::SaveString(kDesktopKey, "MenuShowDelay", "400");
  modRegistry::DeleteValue(kPoliciesKey, "NoNetHood");
  vxtest::DeleteTree(kVerb);
  auto m = Open("", env);
  m->SelectTab(kTabShell);
  ASSERT_TRUE(m->flags.treeFilled);

  // The delay scrolled, then "Delay Until Clicked": "65535" whatever the number.
  SettingsTree& tree = m->settingsTree();
  tree.SelectKey(kMenuShowDelayKey);
  SendMessageA(tree.page().hwnd(), WM_VSCROLL, SB_PAGEUP, reinterpret_cast<LPARAM>(tree.page().scrollBar()));
  EXPECT_EQ(tree.model().Value(kMenuShowDelayKey), "410");
  Toggle(*m, kDelayUntilClickedKey);
  Toggle(*m, "\"Shortcut to\" Prefix on New Shortcuts");  // on (no value) -> off
  Toggle(*m, "Font Smoothing");
  seam.promptAnswers.push_back({2, false});  // the network warning: OK
  Toggle(*m, kHideNetworkKey);
  Toggle(*m, "Add Vexillor to My Computer context menu");
  EXPECT_TRUE(m->applyEnabled());
  seam.prompts.clear();
  m->OnCommand(IDC_APPLY);
  EXPECT_FALSE(m->applyEnabled());
  EXPECT_TRUE(scope.errors.empty());
  EXPECT_TRUE(m->lastApply().ok());
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "MenuShowDelay"), "65535");
  EXPECT_EQ(modRegistry::GetBinary(kExplorerKey, "link"), std::string(4, '\0'));
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "FontSmoothing"), "2");
  EXPECT_EQ(modRegistry::GetDword(kPoliciesKey, "NoNetHood"), 999);
  EXPECT_EQ(modRegistry::GetString(kVerb, ""), "&Vexillor...");
  EXPECT_EQ(modRegistry::GetString(std::string(kVerb) + "\\Command", ""), env.exePath);
  // The network policy and the delay need a restart, and Apply offered it.
  ASSERT_FALSE(seam.prompts.empty());
  EXPECT_EQ(seam.prompts.back().message.rfind("You will need to restart your computer", 0), 0u);

  // Back off: the prefix value goes, the verb goes with its Command subkey.
  Toggle(*m, "\"Shortcut to\" Prefix on New Shortcuts");
  Toggle(*m, "Add Vexillor to My Computer context menu");
  Toggle(*m, kDelayUntilClickedKey);
  m->OnCommand(IDC_APPLY);
  EXPECT_FALSE(vxtest::ValueExists(kExplorerKey, "link"));
  EXPECT_FALSE(vxtest::KeyExists(kVerb));
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "MenuShowDelay"), "410");
  m->flags.restartLater = false;

  // The selected node is recorded by key at closing and found again at the next start.
  m->settingsTree().SelectKey("Drag Width");
  ASSERT_TRUE(Close(*m));
  EXPECT_EQ(modRegistry::GetString(kSettingsKey, "Selected"), "Drag Width");
  m = Open("", env);
  m->SelectTab(kTabShell);
  EXPECT_EQ(m->settingsTree().SelectedKey(), "Drag Width");
  EXPECT_TRUE(m->settingsTree().page().EditorShown());
  EXPECT_FALSE(m->applyEnabled());
  SendMessageA(m->hwnd(), WM_CLOSE, 0, 0);
}

// A recorded node that this edition does not have selects nothing, and nothing fails.
TEST_F(ShellTab, ARecordedNodeTheEditionLacksSelectsNothing) {
  const Environment env = DetectEnvironment();
  modRegistry::SaveString(kSettingsKey, "Selected", "No Active Desktop");
  auto m = Open("", MakeEnvironment("Win95", env.windowsFolder, env.systemFolder, "4.70", false, env.exePath));
  m->SelectTab(kTabShell);
  EXPECT_TRUE(m->flags.treeFilled);
  EXPECT_EQ(m->settingsTree().SelectedKey(), "");
  SendMessageA(m->hwnd(), WM_CLOSE, 0, 0);
}

TEST_F(ShellTab, RestoreAllIconsWalksTheTabsAndWritesNothing) {
  const Environment env = DetectEnvironment();
  modRegistry::SaveDword(kSettingsKey, "Active Tab", kTabOthers);
  modRegistry::SaveString(kSettingsKey, "Current Theme", "C:\\Themes\\Blue.vxtheme");
  modRegistry::SaveString(kShellIconsKey, "3", "C:\\x.dll,5");
  auto m = Open("", env);
  // No command of the Tools menu is greyed.
  HMENU tools = GetSubMenu(GetMenu(m->hwnd()), 1);
  for (int id : {IDM_TOOLS_RESTORE_SETTINGS, IDM_TOOLS_RESTORE_ICONS, IDM_TOOLS_RESTORE_POINTERS})
    EXPECT_FALSE(GetMenuState(tools, static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) << id;
  m->List(kTabFolders)->SelItemIndex(2);

  // Cancel changes nothing.
  seam.promptAnswers.push_back({0, false});
  m->OnCommand(IDM_TOOLS_RESTORE_ICONS);
  EXPECT_FALSE(m->applyEnabled());
  EXPECT_EQ(m->CurrentTab(), kTabOthers);

  seam.promptAnswers.push_back({1, false});
  m->OnCommand(IDM_TOOLS_RESTORE_ICONS);
  ASSERT_EQ(seam.prompts.size(), 2u);
  EXPECT_NE(seam.prompts[1].message.find("Restoring all your " + env.editionName + " system icons"), std::string::npos);
  EXPECT_EQ(m->CurrentTab(), kTabOthers);
  EXPECT_EQ(m->List(kTabFolders)->ListIndex(), 2);
  EXPECT_EQ(ui::GetText(m->hwnd()), "Vexillor");
  EXPECT_TRUE(m->applyEnabled());
  EXPECT_TRUE(m->flags.rebuildCachePending);
  EXPECT_EQ(m->List(kTabFolders)->ItemFullPath(kClosedFolderKey), env.systemFolder + "\\shell32.dll,3");
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "C:\\x.dll,5");  // pending until Apply
  // The pointers are not touched.
  m->List(kTabPointers)->Change("Normal Select", "C:\\x.cur", 0);
  seam.promptAnswers.push_back({1, false});
  m->OnCommand(IDM_TOOLS_RESTORE_ICONS);
  EXPECT_EQ(m->List(kTabPointers)->ItemFullPath("Normal Select"), "C:\\x.cur,0");

  // Restore all Pointers sets no rebuild of its own.
  m->flags.rebuildCachePending = false;
  seam.promptAnswers.push_back({1, false});
  m->OnCommand(IDM_TOOLS_RESTORE_POINTERS);
  EXPECT_FALSE(m->flags.rebuildCachePending);
  EXPECT_EQ(m->List(kTabPointers)->ItemFullPathmouse("Normal Select"), "");
  EXPECT_EQ(m->CurrentTab(), kTabOthers);
  m->flags.restartLater = false;
  seam.promptAnswers.push_back({1, false});
  SendMessageA(m->hwnd(), WM_CLOSE, 0, 0);
}

// The node recorded as selected is shown, not edited: a stored value out of bounds stays as read until
// the user changes it. Group pictures follow Collapse All and Expand All; Restore all Settings leaves
// the delay's node with the off picture and no editor.
TEST_F(ShellTab, TheRecordedNodeIsShownNotEditedAndPicturesFollowTheirState) {
  const Environment env = DetectEnvironment();
  modRegistry::SaveString(kDesktopKey, "DoubleClickWidth", "99");  // above the bound of 32
  modRegistry::SaveString(kSettingsKey, "Selected", "Double Click Width");
  auto m = Open("", env);
  m->SelectTab(kTabShell);
  SettingsTree& tree = m->settingsTree();
  ASSERT_EQ(tree.SelectedKey(), "Double Click Width");
  EXPECT_TRUE(tree.page().EditorShown());
  EXPECT_EQ(tree.page().Text(), "99");
  EXPECT_FALSE(m->applyEnabled());
  Toggle(*m, "Font Smoothing");  // an Apply for another reason
  m->OnCommand(IDC_APPLY);
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "DoubleClickWidth"), "99");

  const int closed = TREEI_GROUP_CLOSED + 1, open = TREEI_GROUP_OPEN + 1;
  for (int command : {ui::SettingsPage::kExpandAll, ui::SettingsPage::kCollapseAll, ui::SettingsPage::kExpandAll}) {
    tree.mnuRClickItem_Click(command);
    for (const SystemSetting& n : tree.model().nodes) {
      HTREEITEM item = tree.Item(n.key);
      if (n.row->kind != NodeKind::Group || !tree.page().HasChildren(item)) continue;
      EXPECT_EQ(tree.page().ImageOf(item), tree.page().Expanded(item) ? open : closed) << n.key << " " << command;
      EXPECT_EQ(tree.page().Expanded(item), command == ui::SettingsPage::kExpandAll) << n.key;
    }
  }

  tree.SelectKey(kMenuShowDelayKey);
  EXPECT_TRUE(tree.page().EditorShown());
  seam.promptAnswers.push_back({1, false});  // OK
  m->OnCommand(IDM_TOOLS_RESTORE_SETTINGS);
  EXPECT_EQ(tree.page().ImageOf(tree.Item(kMenuShowDelayKey)), kImageOff);
  EXPECT_FALSE(tree.page().EditorShown());
  m->flags.restartLater = false;
  seam.promptAnswers.push_back({1, false});  // "No" to saving
  SendMessageA(m->hwnd(), WM_CLOSE, 0, 0);
}

}  // namespace
