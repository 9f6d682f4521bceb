// The main window in-process: start-up from the preferences, tabs, menus, toolbar, and closing.
#include <gtest/gtest.h>
#include <windows.h>

#include "MainWindowFixture.h"
#include "app/Preferences.h"
#include "registry/modRegistry.h"
#include "resource.h"

namespace {

using vx::Main;

class MainWindow : public vxtest::MainWindowTest {
 protected:
  static RECT Rect(const Main& m) {
    RECT r;
    GetWindowRect(m.hwnd(), &r);
    return r;
  }
  static std::string Setting(const char* name) { return modRegistry::GetString(vx::kSettingsKey, name); }
  static std::string MenuText(HMENU menu, UINT item, UINT flags = MF_BYCOMMAND) {
    char text[64] = {};
    GetMenuStringA(menu, item, text, sizeof text, flags);
    return text;
  }
};

TEST_F(MainWindow, FirstRunKeepsTheDesignPositionShowsDesktopAndRecordsOnClose) {
  auto m = Open();
  EXPECT_EQ(Rect(*m).left, Main::kDesignLeft);
  EXPECT_EQ(Rect(*m).top, Main::kDesignTop);
  EXPECT_EQ(m->CurrentTab(), vx::kTabDesktop);
  EXPECT_EQ(ui::GetText(m->hwnd()), "Vexillor");
  EXPECT_FALSE(m->applyEnabled());
  EXPECT_FALSE(m->recentMenu().separator);
  EXPECT_EQ(GetMenuItemCount(m->fileMenu()), 8);  // Open, -, Save, Save As, -, Rebuild, -, Exit
  EXPECT_TRUE(IsWindowVisible(m->List(vx::kTabDesktop)->hwnd()));

  ASSERT_TRUE(Close(*m));
  EXPECT_TRUE(seam.prompts.empty());
  EXPECT_EQ(Setting("Left"), std::to_string(Main::kDesignLeft * ui::TwipsPerPixelX()));
  EXPECT_EQ(Setting("Top"), std::to_string(Main::kDesignTop * ui::TwipsPerPixelY()));
  EXPECT_EQ(modRegistry::GetDword(vx::kSettingsKey, "Active Tab"), vx::kTabDesktop);
  EXPECT_EQ(Setting("Current Theme"), "Error");  // nothing was applied
}

TEST_F(MainWindow, PositionIsCentredOrRestoredAndTheTabRemembered) {
  modRegistry::SaveDword(vx::kSettingsKey, "Positions", 0);
  modRegistry::SaveString(vx::kSettingsKey, "Left", "15");
  modRegistry::SaveString(vx::kSettingsKey, "Top", "15");
  {
    auto m = Open();
    RECT r = Rect(*m);
    EXPECT_EQ(r.left, (GetSystemMetrics(SM_CXSCREEN) - (r.right - r.left)) / 2);
    EXPECT_EQ(r.top, (GetSystemMetrics(SM_CYSCREEN) - (r.bottom - r.top)) / 2);
    ASSERT_TRUE(Close(*m));
    // Left and Top are written at every close, centred or not.
    EXPECT_EQ(Setting("Left"), std::to_string(r.left * ui::TwipsPerPixelX()));
  }
  modRegistry::SaveDword(vx::kSettingsKey, "Positions", 1);
  modRegistry::SaveString(vx::kSettingsKey, "Left", "3000");
  modRegistry::SaveString(vx::kSettingsKey, "Top", "1500");
  modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", vx::kTabDrives);
  {
    auto m = Open();
    EXPECT_EQ(Rect(*m).left, 3000 / ui::TwipsPerPixelX());
    EXPECT_EQ(Rect(*m).top, 1500 / ui::TwipsPerPixelY());
    EXPECT_EQ(m->CurrentTab(), vx::kTabDrives);
    EXPECT_TRUE(IsWindowVisible(m->List(vx::kTabDrives)->hwnd()));
    EXPECT_FALSE(IsWindowVisible(m->List(vx::kTabDesktop)->hwnd()));
    m->SelectTab(vx::kTabOthers);
    ASSERT_TRUE(Close(*m));
    EXPECT_EQ(modRegistry::GetDword(vx::kSettingsKey, "Active Tab"), vx::kTabOthers);
  }
  // "Active Tab" = 0: always the desktop tab, never recorded. A bad "Top" keeps the design top.
  modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", 0);
  modRegistry::SaveString(vx::kSettingsKey, "Top", "Error");
  {
    auto m = Open();
    EXPECT_EQ(m->CurrentTab(), vx::kTabDesktop);
    EXPECT_EQ(Rect(*m).top, Main::kDesignTop);
    EXPECT_EQ(Rect(*m).left, 3000 / ui::TwipsPerPixelX());
    m->SelectTab(vx::kTabPointers);
    ASSERT_TRUE(Close(*m));
    EXPECT_EQ(modRegistry::GetDword(vx::kSettingsKey, "Active Tab"), 0);
  }
}

TEST_F(MainWindow, CurrentThemeTitlesAndRecentThemesOnTheFileMenu) {
  modRegistry::SaveString(vx::kSettingsKey, "Current Theme", "C:\\Themes\\Blue.Dark.vxtheme");
  modRegistry::SaveString(vx::kThemesKey, "1", "C:\\Themes\\Red.vxtheme");
  auto m = Open();
  EXPECT_EQ(ui::GetText(m->hwnd()), "Blue - Vexillor");
  EXPECT_EQ(m->currentThemePath(), "C:\\Themes\\Blue.Dark.vxtheme");
  // The current theme went to the top of the recent list; the old first moved down.
  HMENU file = m->fileMenu();
  EXPECT_EQ(GetMenuItemCount(file), 11);  // plus a separator and two themes
  EXPECT_EQ(MenuText(file, IDM_FILE_RECENT1), "Blue.Dark.vxtheme");
  EXPECT_EQ(MenuText(file, IDM_FILE_RECENT1 + 1), "Red.vxtheme");
  EXPECT_EQ(GetMenuItemID(file, 6), 0u);  // the separator stands at index 6
  EXPECT_EQ(GetMenuItemID(file, 7), static_cast<UINT>(IDM_FILE_RECENT1));
  EXPECT_EQ(GetMenuItemID(file, 10), static_cast<UINT>(IDM_FILE_EXIT));

  m->SetCurrentTheme("");
  EXPECT_EQ(ui::GetText(m->hwnd()), "Vexillor");
  m->SetCurrentTheme("C:\\Themes\\Green.vxtheme");
  EXPECT_EQ(ui::GetText(m->hwnd()), "Green - Vexillor");
  EXPECT_EQ(GetMenuItemCount(file), 12);
  EXPECT_EQ(MenuText(file, IDM_FILE_RECENT1 + 2), "Red.vxtheme");
  Close(*m);

  // A stored theme that is not a path means no theme.
  modRegistry::SaveString(vx::kSettingsKey, "Current Theme", "Blue.vxtheme");
  auto again = Open();
  EXPECT_EQ(ui::GetText(again->hwnd()), "Vexillor");
  EXPECT_EQ(again->currentThemePath(), "");
}

TEST_F(MainWindow, TabsToolbarAndMenus) {
  auto m = Open();
  HWND tab = m->tabStrip();
  ASSERT_EQ(SendMessageA(tab, TCM_GETITEMCOUNT, 0, 0), 9);
  int i = 0;
  for (const char* caption : {"Shell", "Desktop", "Start", "Folders", "Drives", "Others", "System", "Explorer", "Pointers"}) {
    char text[32] = {};
    TCITEMA item{TCIF_TEXT, 0, 0, text, sizeof text, 0, 0};
    SendMessageA(tab, TCM_GETITEMA, static_cast<WPARAM>(i++), reinterpret_cast<LPARAM>(&item));
    EXPECT_STREQ(text, caption);
  }
  // Back and Forward, without wrapping.
  const int steps[][3] = {{1, IDT_BACK, 1}, {1, IDT_FORWARD, 2}, {9, IDT_FORWARD, 9}, {9, IDT_BACK, 8}};
  for (const auto& [from, command, to] : steps) {
    m->SelectTab(from);
    m->OnCommand(command);
    EXPECT_EQ(m->CurrentTab(), to) << from << " " << command;
  }
  EXPECT_TRUE(IsWindowVisible(m->folderTree().hwnd()));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(GetDlgItem(m->hwnd(), IDC_PANE), IDC_DEFAULT)));

  // Seventeen toolbar buttons, separators at 3, 6, 9, 12 and 16 (1-based).
  HWND tb = m->toolbar();
  ASSERT_EQ(SendMessageA(tb, TB_BUTTONCOUNT, 0, 0), 17);
  for (int i = 0; i < 17; ++i) {
    TBBUTTON b{};
    SendMessageA(tb, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&b));
    const bool separator = (b.fsStyle & BTNS_SEP) != 0;
    EXPECT_EQ(separator, i + 1 == 3 || i + 1 == 6 || i + 1 == 9 || i + 1 == 12 || i + 1 == 16) << i + 1;
  }
  // The flat style with the constant widened with its sign: the whole high word is set.
  const DWORD style = static_cast<DWORD>(SendMessageA(tb, TB_GETSTYLE, 0, 0));
  EXPECT_EQ(style & 0xFFFF8840u, 0xFFFF8840u);
  EXPECT_TRUE(IsWindowEnabled(tb));

  // Toolbar commands reach the same places as the menus: the web items go to the shell.
  m->OnCommand(IDM_WEB_HOME);
  m->OnCommand(IDM_WEB_EMAIL);
  m->OnCommand(IDM_WEB_THEMES);
  ASSERT_EQ(seam.opened.size(), 3u);
  EXPECT_EQ(seam.opened[0].rfind("http", 0), 0u);
  EXPECT_EQ(seam.opened[1].rfind("mailto:", 0), 0u);
  EXPECT_EQ(seam.opened[2], seam.opened[0] + "/themes.htm");
  m->OnCommand(IDC_HELPBTN);
  ASSERT_EQ(seam.opened.size(), 4u);
  EXPECT_NE(seam.opened[3].find("\\help\\index.html"), std::string::npos);

  // What's This?: the next click shows the help of the control under it, and only that click.
  m->OnCommand(IDM_HELP_WHATSTHIS);
  RECT apply;
  GetWindowRect(GetDlgItem(m->hwnd(), IDC_APPLY), &apply);
  POINT at{apply.left + 5, apply.top + 5};
  ScreenToClient(m->hwnd(), &at);
  SendMessageA(m->hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
  SendMessageA(m->hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
  ASSERT_EQ(seam.helpCalls.size(), 1u);
  EXPECT_EQ(seam.helpCalls[0].command, static_cast<unsigned>(HELP_CONTEXTPOPUP));
  EXPECT_NE(seam.helpCalls[0].keyword, "0");

  // Menus: Tools and the Help web sub-menu.
  HMENU bar = GetMenu(m->hwnd());
  EXPECT_EQ(MenuText(GetSubMenu(bar, 1), 1, MF_BYPOSITION), "Restore all &Icons");
  EXPECT_EQ(MenuText(GetSubMenu(GetSubMenu(bar, 2), 3), 3, MF_BYPOSITION), "Additional &Icon Themes");
}

TEST_F(MainWindow, TheSplitterSizesTheFolderTreeWithinItsLimits) {
  auto m = Open();
  m->SelectTab(vx::kTabExplorer);
  HWND splitter = GetDlgItem(GetDlgItem(m->hwnd(), IDC_PANE), IDC_SPLITTER);
  ASSERT_TRUE(IsWindowVisible(splitter));
  const int tpp = ui::TwipsPerPixelX();
  auto edges = [](HWND h) {  // left and right edge in the pane
    RECT r;
    GetWindowRect(h, &r);
    MapWindowPoints(nullptr, GetParent(h), reinterpret_cast<POINT*>(&r), 2);
    return std::pair{r.left, r.right};
  };
  EXPECT_EQ(m->treeWidthTwips(), 3375);
  SendMessageA(splitter, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(2, 10));
  EXPECT_EQ(m->treeWidthTwips(), 4815);
  SendMessageA(splitter, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(2, 10));
  EXPECT_EQ(m->treeWidthTwips(), 3375);
  // Dragging 30 pixels to the right widens the tree by as many twips; the bar follows its edge.
  SendMessageA(splitter, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 10));
  SendMessageA(splitter, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(30, 10));
  EXPECT_EQ(m->treeWidthTwips(), 3375 + 30 * tpp);
  EXPECT_NEAR(edges(splitter).first, edges(m->folderTree().hwnd()).second - 50 / tpp, 1);
  // Past the widest width nothing moves; back past the narrowest the tree stops there.
  SendMessageA(splitter, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(200, 10));
  EXPECT_EQ(m->treeWidthTwips(), 3375 + 30 * tpp);
  SendMessageA(splitter, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(static_cast<WORD>(-200), 10));
  EXPECT_EQ(m->treeWidthTwips(), 3375);
  SendMessageA(splitter, WM_LBUTTONUP, 0, MAKELPARAM(2, 10));
}

TEST_F(MainWindow, ClosingWithPendingChangesAnsweredEachWay) {
  // Cancel keeps the window and the pending changes.
  {
    auto m = Open();
    m->EnableApply();
    seam.promptAnswers.push_back({0, false});
    EXPECT_FALSE(Close(*m));
    ASSERT_EQ(seam.prompts.size(), 1u);
    EXPECT_EQ(seam.prompts[0].message, "Would you like to save your changes before closing?");
    EXPECT_EQ(seam.prompts[0].buttons, (std::array<std::string, 3>{"&Cancel", "No", "Yes"}));
    EXPECT_TRUE(m->applyEnabled());
    // No: closes without applying anything.
    seam.promptAnswers.push_back({1, false});
    EXPECT_TRUE(Close(*m));
    EXPECT_EQ(Setting("Current Theme"), "Error");
  }
  // OK with nothing pending closes without writing anything of Apply's.
  {
    auto m = Open();
    m->OnCommand(IDOK);
    ui::DoEvents();
    EXPECT_EQ(m->hwnd(), nullptr);
    EXPECT_EQ(Setting("Current Theme"), "Error");
  }
  // Yes applies first (Apply records the empty current theme among its writes), then closes.
  auto m = Open();
  m->EnableApply();
  seam.promptAnswers.push_back({2, false});
  EXPECT_TRUE(Close(*m));
  EXPECT_EQ(Setting("Current Theme"), "");
  vx::Run(m->lastUndo().plan);  // every value Apply replaced goes back as it was
}

TEST_F(MainWindow, ADeclinedRestartIsRemindedOnClose) {
  auto m = Open();
  m->flags.restartLater = true;
  ASSERT_TRUE(Close(*m));
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message,
            "One or more of these changes you have made will only take effect the next time you start Windows.");
  EXPECT_EQ(seam.prompts[0].icon, "32516");
}

}  // namespace
