// The main window in-process: start-up, tabs, menus, toolbar, closing, the theme commands, and the
// preference routines (path names, the recent themes).
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

// Where the window opens and which tab it shows come from the preferences, and both are recorded at
// closing; an "Active Tab" of 0 means always the desktop tab and stays 0.
TEST_F(MainWindow, PositionAndTabFromThePreferencesAndRecordedOnClose) {
  enum Where { kDesign, kCentred, kStored };
  const struct { int positions; const char *left, *top; int tab; Where x, y; int shown, select, recorded; } cases[] = {
      {-1, nullptr, nullptr, -1, kDesign, kDesign, vx::kTabDesktop, vx::kTabDesktop, vx::kTabDesktop},  // first run
      {0, "15", "15", -1, kCentred, kCentred, vx::kTabDesktop, vx::kTabDesktop, vx::kTabDesktop},
      {1, "3000", "1500", vx::kTabDrives, kStored, kStored, vx::kTabDrives, vx::kTabOthers, vx::kTabOthers},
      {1, "3000", "Error", 0, kStored, kDesign, vx::kTabDesktop, vx::kTabPointers, 0},
  };
  const int tppX = ui::TwipsPerPixelX(), tppY = ui::TwipsPerPixelY();
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    vxtest::DeleteTree(vx::kSettingsKey);
    if (c.positions >= 0) modRegistry::SaveDword(vx::kSettingsKey, "Positions", c.positions);
    if (c.left) modRegistry::SaveString(vx::kSettingsKey, "Left", c.left);
    if (c.top) modRegistry::SaveString(vx::kSettingsKey, "Top", c.top);
    if (c.tab >= 0) modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", c.tab);
    auto m = Open();
    const RECT r = Rect(*m);
    auto want = [](Where w, int design, int centred, const char* stored, int tpp) {
      return w == kDesign ? design : w == kCentred ? centred : std::atoi(stored) / tpp;
    };
    EXPECT_EQ(r.left, want(c.x, Main::kDesignLeft, (GetSystemMetrics(SM_CXSCREEN) - (r.right - r.left)) / 2, c.left, tppX));
    EXPECT_EQ(r.top, want(c.y, Main::kDesignTop, (GetSystemMetrics(SM_CYSCREEN) - (r.bottom - r.top)) / 2, c.top, tppY));
    EXPECT_EQ(m->CurrentTab(), c.shown);
    EXPECT_TRUE(IsWindowVisible(m->List(c.shown)->hwnd()));
    EXPECT_EQ(IsWindowVisible(m->List(vx::kTabDesktop)->hwnd()) != FALSE, c.shown == vx::kTabDesktop);
    EXPECT_EQ(GetMenuItemCount(m->fileMenu()), 8);  // Open, -, Save, Save As, -, Rebuild, -, Exit
    m->SelectTab(c.select);
    ASSERT_TRUE(Close(*m));
    EXPECT_TRUE(seam.prompts.empty());
    // Left and Top are written at every close, centred or not.
    EXPECT_EQ(Setting("Left"), std::to_string(r.left * tppX));
    EXPECT_EQ(Setting("Top"), std::to_string(r.top * tppY));
    EXPECT_EQ(modRegistry::GetDword(vx::kSettingsKey, "Active Tab"), c.recorded);
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
  // The theme commands are there; a recent theme that has gone is reported and nothing changes.
  for (int id : {IDM_FILE_OPEN, IDM_FILE_SAVE, IDM_FILE_SAVEAS})
    EXPECT_FALSE(GetMenuState(again->fileMenu(), static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) << id;
  again->OnCommand(IDM_FILE_RECENT1);
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message, "The file Green.vxtheme does not appear to be a valid theme file.");
  EXPECT_FALSE(again->applyEnabled());
  EXPECT_EQ(ui::GetText(again->hwnd()), "Vexillor");
}

TEST_F(MainWindow, TabsToolbarAndMenus) {
  auto m = Open();
  HWND tab = m->tabStrip();
  std::string tabs;
  for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageA(tab, TCM_GETITEMCOUNT, 0, 0)); ++i) {
    char text[32] = {};
    TCITEMA item{TCIF_TEXT, 0, 0, text, sizeof text, 0, 0};
    SendMessageA(tab, TCM_GETITEMA, i, reinterpret_cast<LPARAM>(&item));
    tabs += std::string(text) + "|";
  }
  EXPECT_EQ(tabs, "Shell|Desktop|Start|Folders|Drives|Others|System|Explorer|Pointers|");
  // Back and Forward, without wrapping.
  const int steps[][3] = {{1, IDT_BACK, 1}, {1, IDT_FORWARD, 2}, {9, IDT_FORWARD, 9}, {9, IDT_BACK, 8}};
  for (const auto& [from, command, to] : steps) {
    m->SelectTab(from);
    m->OnCommand(command);
    EXPECT_EQ(m->CurrentTab(), to) << from << " " << command;
  }
  EXPECT_TRUE(IsWindowVisible(m->folderTree().hwnd()));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(GetDlgItem(m->hwnd(), IDC_PANE), IDC_DEFAULT)));

  // The toolbar's buttons (b) and separators (|).
  HWND tb = m->toolbar();
  std::string buttons;
  for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageA(tb, TB_BUTTONCOUNT, 0, 0)); ++i) {
    TBBUTTON b{};
    SendMessageA(tb, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&b));
    buttons += (b.fsStyle & BTNS_SEP) ? '|' : 'b';
  }
  EXPECT_EQ(buttons, "bb|bb|bb|bb|bbb|b");
  // The flat style with the constant widened with its sign: the whole high word is set.
  const DWORD style = static_cast<DWORD>(SendMessageA(tb, TB_GETSTYLE, 0, 0));
  EXPECT_EQ(style & 0xFFFF8840u, 0xFFFF8840u);
  EXPECT_TRUE(IsWindowEnabled(tb));

  // Toolbar commands reach the same places as the menus: the web items go to the shell, and the About
  // box carries the same addresses.
  for (int id : {IDM_WEB_HOME, IDM_WEB_EMAIL, IDM_WEB_THEMES, IDC_HELPBTN, IDM_HELP_ABOUT}) m->OnCommand(id);
  ASSERT_EQ(seam.opened.size(), 4u);
  EXPECT_EQ(seam.opened[0].rfind("http", 0), 0u);
  EXPECT_EQ(seam.opened[1].rfind("mailto:", 0), 0u);
  EXPECT_EQ(seam.opened[2], seam.opened[0] + "/themes.htm");
  EXPECT_NE(seam.opened[3].find("\\help\\index.html"), std::string::npos);
  ASSERT_EQ(seam.abouts.size(), 1u);
  EXPECT_EQ(seam.abouts[0].homePage, seam.opened[0]);
  EXPECT_EQ(seam.abouts[0].mail, seam.opened[1]);

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
    EXPECT_TRUE(m->applyEnabled());
    // No: closes without applying anything.
    seam.promptAnswers.push_back({1, false});
    EXPECT_TRUE(Close(*m));
    EXPECT_EQ(Setting("Current Theme"), "Error");
  }
  // OK with nothing pending closes without writing anything of Apply's; a declined restart is reminded.
  {
    auto m = Open();
    m->flags.restartLater = true;
    m->OnCommand(IDOK);
    ui::DoEvents();
    EXPECT_EQ(m->hwnd(), nullptr);
    EXPECT_EQ(Setting("Current Theme"), "Error");
    EXPECT_EQ(seam.prompts.back().message,
              "One or more of these changes you have made will only take effect the next time you start Windows.");
  }
  // Yes applies first (Apply records the empty current theme among its writes), then closes.
  auto m = Open();
  m->EnableApply();
  seam.promptAnswers.push_back({2, false});
  EXPECT_TRUE(Close(*m));
  EXPECT_EQ(Setting("Current Theme"), "");
  vx::Run(m->lastUndo().plan);  // every value Apply replaced goes back as it was
}

class MainThemes : public vxtest::MainWindowTest {
 protected:
  MainThemes() {
    char temp[MAX_PATH] = {};
    folder = std::string(temp, GetTempPathA(MAX_PATH, temp)) + "vxmainthemes";
    CreateDirectoryA(folder.c_str(), nullptr);
    theme = folder + "\\Blue Sky.vxtheme";
    DeleteFileA(theme.c_str());
    WritePrivateProfileStringA("Folder Icons", "Closed Folder", "%WinSysDir%shell32.dll,7", theme.c_str());
    WritePrivateProfileStringA("Pointers", "Busy", "%ThemeDir%busy.ani,0", theme.c_str());
  }
  ~MainThemes() override {
    for (const char* name : {"\\Blue Sky.vxtheme", "\\Saved.vxtheme"}) DeleteFileA((folder + name).c_str());
    RemoveDirectoryA(folder.c_str());
  }
  void CloseWithoutSaving(vx::Main& m) {
    seam.promptAnswers.push_back({1, false});  // "No" to saving the pending changes
    Close(m);
  }

  std::string folder, theme;
};

TEST_F(MainThemes, CommandLineThemeIsPendingWhenTheWindowAppears) {
  const std::string stored = modRegistry::GetString(vx::kShellIconsKey, "3");
  // The last one a bare name: the theme in the current folder.
  char old[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, old);
  SetCurrentDirectoryA(folder.c_str());
  std::string quoted(1, '"'), bare(1, '"');  // by appending: GCC 12 warns falsely on "\"" + string
  quoted.append(theme).append("\""), bare.append(theme.substr(theme.rfind('\\') + 1)).append("\"");
  for (const std::string& commandLine : {theme, quoted, bare}) {
    SCOPED_TRACE(commandLine);
    seam.prompts.clear();
    auto m = Open(commandLine);
    const vx::Environment& env = m->environment();
    EXPECT_TRUE(IsWindowVisible(m->hwnd()));
    EXPECT_TRUE(m->applyEnabled());
    EXPECT_TRUE(m->flags.rebuildCachePending);
    EXPECT_FALSE(m->flags.autoApplyMode);
    EXPECT_EQ(m->List(vx::kTabFolders)->ItemFullPath("Closed Folder"), env.systemFolder + "\\shell32.dll,7");
    EXPECT_EQ(m->List(vx::kTabPointers)->ItemFullPath("Busy"), folder + "\\busy.ani,0");
    EXPECT_EQ(ui::GetText(m->hwnd()), "Blue Sky - Vexillor");
    EXPECT_EQ(m->currentThemePath(), theme);
    EXPECT_EQ(modRegistry::GetString(vx::kSettingsKey, "Current Theme"), theme);
    EXPECT_EQ(modRegistry::GetString(vx::kThemesKey, "1"), theme);
    // Nothing reached the system.
    EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), stored);
    EXPECT_TRUE(seam.prompts.empty()) << seam.prompts.front().message;
    CloseWithoutSaving(*m);
    EXPECT_EQ(m->hwnd(), nullptr);
  }
  SetCurrentDirectoryA(old);
}

TEST_F(MainThemes, SaveAsThenSaveWriteTheLists) {
  auto m = Open(theme);
  const vx::Environment& env = m->environment();
  const std::string saved = folder + "\\Saved";
  seam.files = {saved};
  m->OnCommand(IDM_FILE_SAVEAS);
  ASSERT_EQ(seam.fileDialogs.size(), 1u);
  EXPECT_EQ(m->currentThemePath(), saved + ".vxtheme");
  auto entry = [&](const char* section, const char* key) {
    char value[128] = {};
    GetPrivateProfileStringA(section, key, "", value, sizeof value, (saved + ".vxtheme").c_str());
    return std::string(value);
  };
  EXPECT_EQ(entry("Folder Icons", "Closed Folder"), "%WinSysDir%shell32.dll,7");

  // Save asks before writing over the current theme.
  m->List(vx::kTabFolders)->Change("Closed Folder", env.systemFolder + "\\shell32.dll", 9);
  seam.promptAnswers = {{2, true}};
  m->OnCommand(IDM_FILE_SAVE);
  EXPECT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(entry("Folder Icons", "Closed Folder"), "%WinSysDir%shell32.dll,9");
  EXPECT_EQ(seam.fileDialogs.size(), 1u);
  CloseWithoutSaving(*m);
}

TEST(PathNames, FileNameAndTitle) {
  const struct { const char *path, *name, *title; } cases[] = {
      {"C:\\Themes\\Blue.Dark.vxtheme", "Blue.Dark.vxtheme", "Blue"},
      {"C:Blue.vxtheme", "Blue.vxtheme", "Blue"},
      {"Blue.vxtheme", "Blue.vxtheme", "Blue"},
      {"C:\\Themes\\", "", ""},
      {"", "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(vx::GetFileName(c.path), c.name) << c.path;
    EXPECT_EQ(vx::FileTitle(c.path), c.title) << c.path;
  }
}

TEST_F(MainWindow, RecentThemesShiftingDuplicatesAndTheUnchangedNewest) {
  auto slots = [] {  // the four slots in the registry, in order
    std::string all;
    for (const char* n : {"1", "2", "3", "4"}) all += modRegistry::GetString(vx::kThemesKey, n) + "|";
    return all;
  };
  vx::RecentMenu menu;
  vx::RecentThemes("", menu);
  EXPECT_FALSE(menu.separator);
  EXPECT_EQ(menu.visible, (std::array<bool, 4>{}));

  for (const char* p : {"C:\\t\\A.vxtheme", "C:\\t\\B.vxtheme", "C:\\t\\C.vxtheme"}) vx::RecentThemes(p, menu);
  EXPECT_EQ(slots(), "C:\\t\\C.vxtheme|C:\\t\\B.vxtheme|C:\\t\\A.vxtheme|Error|");
  EXPECT_TRUE(menu.separator);
  EXPECT_EQ(menu.captions[0], "C.vxtheme");
  EXPECT_EQ(menu.captions[2], "A.vxtheme");
  EXPECT_FALSE(menu.visible[3]);
  // The newest again: nothing moves.
  vx::RecentThemes("C:\\t\\C.vxtheme", menu);
  EXPECT_EQ(slots(), "C:\\t\\C.vxtheme|C:\\t\\B.vxtheme|C:\\t\\A.vxtheme|Error|");
  // The second newest goes first and stays in slot 3 as well.
  vx::RecentThemes("C:\\t\\B.vxtheme", menu);
  EXPECT_EQ(slots(), "C:\\t\\B.vxtheme|C:\\t\\C.vxtheme|C:\\t\\B.vxtheme|C:\\t\\A.vxtheme|");
  EXPECT_EQ(menu.captions, (std::array<std::string, 4>{"B.vxtheme", "C.vxtheme", "B.vxtheme", "A.vxtheme"}));
  // Reading back in a new run shows the same, and a slot that is not a path stays hidden.
  modRegistry::SaveString(vx::kThemesKey, "3", "not a path");
  vx::RecentMenu fresh;
  vx::RecentThemes("", fresh);
  EXPECT_TRUE(fresh.separator);
  EXPECT_EQ(fresh.visible, (std::array<bool, 4>{true, true, false, true}));
  EXPECT_EQ(fresh.captions[3], "A.vxtheme");
}

}  // namespace
