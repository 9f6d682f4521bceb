// The theme commands in the main window, in-process: a theme on the command line is pending when the
// window appears, "/A" is not the apply switch, Save As and Save write the lists, a removed recent
// theme is reported.
#include <gtest/gtest.h>
#include <windows.h>

#include "MainWindowFixture.h"
#include "registry/modRegistry.h"
#include "resource.h"

namespace {

class MainThemes : public vxtest::MainWindowTest {
 protected:
  MainThemes() {
    char temp[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, temp);
    folder = std::string(temp) + "vxmainthemes";
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
  for (const std::string& commandLine : {theme, "\"" + theme + "\"", "/A " + theme}) {
    seam.prompts.clear();
    auto m = Open(commandLine);
    const vx::Environment& env = m->environment();
    EXPECT_TRUE(IsWindowVisible(m->hwnd())) << commandLine;
    EXPECT_TRUE(m->applyEnabled()) << commandLine;
    EXPECT_TRUE(m->flags.rebuildCachePending);
    EXPECT_FALSE(m->flags.autoApplyMode) << commandLine;
    EXPECT_EQ(m->List(vx::kTabFolders)->ItemFullPath("Closed Folder"), env.systemFolder + "\\shell32.dll,7");
    EXPECT_EQ(m->List(vx::kTabPointers)->ItemFullPath("Busy"), folder + "\\busy.ani,0");
    EXPECT_EQ(ui::GetText(m->hwnd()), "Blue Sky - Vexillor");
    EXPECT_EQ(m->currentThemePath(), theme);
    EXPECT_EQ(modRegistry::GetString(vx::kSettingsKey, "Current Theme"), theme);
    // Start-up then records the command-line text itself, which only a plain path leaves first.
    if (commandLine == theme) {
      EXPECT_EQ(modRegistry::GetString(vx::kThemesKey, "1"), theme);
    }
    // Nothing reached the system.
    EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), stored);
    EXPECT_TRUE(seam.prompts.empty()) << seam.prompts.front().message;
    CloseWithoutSaving(*m);
    EXPECT_EQ(m->hwnd(), nullptr);
  }
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
  EXPECT_EQ(entry("Software Credits", "Company"), "Quenby");

  // Save asks before writing over the current theme; with the question turned off it just writes.
  m->List(vx::kTabFolders)->Change("Closed Folder", env.systemFolder + "\\shell32.dll", 9);
  seam.promptAnswers = {{2, true}};
  m->OnCommand(IDM_FILE_SAVE);
  EXPECT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(entry("Folder Icons", "Closed Folder"), "%WinSysDir%shell32.dll,9");
  m->List(vx::kTabFolders)->Change("Closed Folder", env.systemFolder + "\\shell32.dll", 11);
  m->OnCommand(IDM_FILE_SAVE);
  EXPECT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.fileDialogs.size(), 1u);
  EXPECT_EQ(entry("Folder Icons", "Closed Folder"), "%WinSysDir%shell32.dll,11");
  CloseWithoutSaving(*m);
}

TEST_F(MainThemes, TheMenuCommandsAreThereAndARemovedRecentThemeIsReported) {
  modRegistry::SaveString(vx::kThemesKey, "1", folder + "\\Removed.vxtheme");
  auto m = Open();
  for (int id : {IDM_FILE_OPEN, IDM_FILE_SAVE, IDM_FILE_SAVEAS})
    EXPECT_FALSE(GetMenuState(m->fileMenu(), static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) << id;
  m->OnCommand(IDM_FILE_RECENT1);
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message, "The file Removed.vxtheme does not appear to be a valid theme file.");
  EXPECT_FALSE(m->applyEnabled());
  EXPECT_EQ(ui::GetText(m->hwnd()), "Vexillor");
  Close(*m);
}

}  // namespace
