// The real program started as a logon script starts it: "/a", "/q", "/q /undo" and "/q /n THEME", with
// their exit codes and log.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>

#include "MainWindowFixture.h"
#include "app/CommandLine.h"
#include "apply/Journal.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"

namespace {

class ThemeCommandLine : public vxtest::MainWindowTest {
 protected:
  ThemeCommandLine() {
    char temp[MAX_PATH] = {};
    theme = std::string(temp, GetTempPathA(MAX_PATH, temp)) + "vx command line.vxtheme";
    DeleteFileA(log.c_str());
    vx::RemoveJournal(vx::JournalPath());
    // The rebuild notice is switched off as a user would, so the plain "/a" runs need no answer.
    modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  }
  ~ThemeCommandLine() override {
    for (const std::string& f : {theme, log}) DeleteFileA(f.c_str());
    vx::RemoveJournal(vx::JournalPath());
  }
  void WriteTheme(const std::vector<std::pair<std::string, std::string>>& entries) {
    DeleteFileA(theme.c_str());
    for (const auto& [key, value] : entries)
      WritePrivateProfileStringA(key == "Busy" ? "Pointers" : "Folder Icons", key.c_str(), value.c_str(),
                                 theme.c_str());
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, theme.c_str());
  }
  static DWORD Run(const std::string& arguments) {
    DWORD exitCode = 999;
    EXPECT_TRUE(vxtest::RealProgram(arguments).Ended(60000, &exitCode)) << arguments << " left a window open";
    return exitCode;
  }
  std::string Log() const {
    std::ifstream in(log);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  static std::string Override(const char* number) { return modRegistry::GetString(vx::kShellIconsKey, number); }

  const vx::Environment env = vx::DetectEnvironment();
  // Every key an Apply of this machine's lists writes, so the test can put all of it back.
  vxtest::KeySnapshot saved{vxtest::KeysOf(vxtest::PlanOfListsApply(env))}, metrics{{vx::kWindowMetricsKey}};
  std::string theme, log = vx::DefaultLogPath();
};

size_t Count(const std::string& log, const std::string& part) {
  size_t n = 0;
  for (size_t at = log.find(part); at != std::string::npos; at = log.find(part, at + 1)) ++n;
  return n;
}

TEST_F(ThemeCommandLine, ApplyAndQuietRunsSayWhatHappened) {
  const struct {
    const char* name;
    std::vector<std::pair<std::string, std::string>> entries;
    std::string arguments;
    DWORD exitCode;
    const char* closedFolder;  // "3" afterwards, "" when unchanged
    const char* logged;        // nullptr: no log at all
  } cases[] = {
      {"plain /a", {{"Closed Folder", "%WinSysDir%shell32.dll,7"}, {"Open Folder", "%WinSysDir%shell32.dll,8"}},
       "/a ", 0, "shell32.dll,7", nullptr},
      {"applied", {{"Closed Folder", "%WinSysDir%shell32.dll,9"}}, "/q /a ", vx::kExitOk, "shell32.dll,9",
       "write: set string"},
      {"refused", {{"Closed Folder", "%WinSysDir%shell32.dll,10"}, {"Busy", "\\\\evil\\share\\busy.ani,0"}},
       "/q /a ", vx::kExitEntryRefused, "shell32.dll,10", "refused: [Pointers] Busy=\\\\evil\\share\\busy.ani,0"},
      {"missing", {}, "/q /a C:\\nowhere\\gone.vxtheme", vx::kExitThemeNotOpened, "", "theme not opened"},
      {"not a theme", {}, "/q /a C:\\x.txt", vx::kExitThemeNotOpened, "", "The file x.txt does not appear"},
      {"no /a", {{"Closed Folder", "%WinSysDir%shell32.dll,11"}}, "/q ", vx::kExitNotApplied, "", "opened: "},
      {"no theme", {}, "/q", vx::kExitThemeNotOpened, "", "no theme given"},
      // As logon scripts type it: capitals, hyphens.
      {"capitals", {{"Closed Folder", "%WinSysDir%shell32.dll,12"}}, "/Q /A ", vx::kExitOk, "shell32.dll,12", "write: "},
      {"hyphens", {{"Closed Folder", "%WinSysDir%shell32.dll,13"}}, "-q -a ", vx::kExitOk, "shell32.dll,13", "write: "},
      // Quotes that do not enclose the value, a variable no one set, a device: refused by name, the rest applied.
      {"disguised", {{"Closed Folder", "%WinSysDir%shell32.dll,14"}, {"Open Folder", "\"\\\\evil\\s\\x.ico\",0"},
                     {"Busy", "%VX_NOT_SET%\\busy.ani,0"}, {"Program Group", "C:\\x\\LPT1.ico,0"}},
       "/q /a ", vx::kExitEntryRefused, "shell32.dll,14", "(Open Folder: a network share)"},
      // Nothing usable: nothing applied, and the code says so.
      {"nothing usable", {{"Closed Folder", "CONIN$"}, {"Busy", "nul.ani,0"}}, "/q /a ", vx::kExitNothingLoaded, "",
       "nothing in the theme could be loaded"},
      // The program's own file by another spelling is still its own default pointer: nothing to write.
      {"own file", {{"Closed Folder", "%WinSysDir%shell32.dll,16"}, {"Busy", "%AppDir%.\\VEXILLOR.exe,3"}}, "/q /a ",
       vx::kExitOk, "shell32.dll,16", "write: "},
      {"usage", {}, "/q /n /a C:\\x.vxtheme", vx::kExitThemeNotOpened, "", "usage error: "},
      {"theme on a share", {}, "/q /a \\\\evil\\s\\x.vxtheme", vx::kExitThemeNotOpened, "", "(a network share)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string before = env.systemFolder + "\\shell32.dll,3";
    modRegistry::SaveString(vx::kShellIconsKey, "3", before);
    DeleteFileA(log.c_str());
    WriteTheme(c.entries);
    EXPECT_EQ(Run(c.entries.empty() ? c.arguments : c.arguments + "\"" + theme + "\""), c.exitCode);
    EXPECT_EQ(Override("3"), *c.closedFolder ? env.systemFolder + "\\" + c.closedFolder : before);
    for (const char* number : {"4", "36"}) EXPECT_EQ(Override(number).find("evil"), std::string::npos);
    EXPECT_EQ(Override("36").find("LPT1"), std::string::npos);
    EXPECT_EQ(LowerAscii(modRegistry::GetString(vx::kCursorsKey, "Wait")).find("vexillor"), std::string::npos);
    const std::string lines = Log();
    if (!c.logged) {
      EXPECT_EQ(Override("4"), env.systemFolder + "\\shell32.dll,8");
      EXPECT_EQ(modRegistry::GetString(vx::kSettingsKey, "Current Theme"), theme);
      // The theme's path heads the recent themes, not the command's text.
      EXPECT_EQ(modRegistry::GetString(vx::kThemesKey, "1"), theme);
      EXPECT_EQ(modRegistry::GetString(vx::kThemesKey, "2"), "Error");
      EXPECT_EQ(lines, "");  // only a quiet run keeps a log
      continue;
    }
    EXPECT_GE(Count(lines, c.logged), 1u);
    EXPECT_EQ(Count(lines, "write: ") > 0, *c.closedFolder != 0);
    EXPECT_EQ(Count(lines, "exit code "), 1u);
    EXPECT_EQ(Count(lines, "; exit code " + std::to_string(c.exitCode)), 1u);
  }
}

TEST_F(ThemeCommandLine, QuietUndoTakesTheLastApplyBackAndQuietReviewWritesNothing) {
  EXPECT_EQ(Run("/q /undo"), static_cast<DWORD>(vx::kExitNothingToUndo));
  modRegistry::SaveString(vx::kShellIconsKey, "3", "C:\\before.dll,2");
  {
    auto m = Open();
    m->SelectTab(vx::kTabFolders);
    m->OnCommand(IDC_DEFAULT);  // Closed Folder back to its default
    m->OnCommand(IDC_APPLY);
    ASSERT_TRUE(m->lastApply().ok());
  }
  const std::string applied = Override("3");
  ASSERT_NE(applied, "C:\\before.dll,2");
  EXPECT_EQ(Run("/q /undo"), 0u) << Log();
  EXPECT_EQ(Override("3"), "C:\\before.dll,2");
  EXPECT_EQ(Run("/q /undo"), 0u);  // the undo taken back: the Apply again
  EXPECT_EQ(Override("3"), applied);
  // A theme reviewed: its change listed in the log, nothing written.
  WriteTheme({{"Closed Folder", "C:\\review.dll,4"}});
  EXPECT_EQ(Run("/q /n \"" + theme + "\""), 0u);
  EXPECT_EQ(Override("3"), applied);
  EXPECT_NE(Log().find("Closed Folder icon): \"" + applied + "\" -> \"C:\\review.dll,4\""), std::string::npos) << Log();
}

// "/n" looks and writes nothing at all: no registry value, no preference, no recent theme, no journal.
TEST_F(ThemeCommandLine, ReviewWritesNothingAndItsCodeSaysWhatApplyWouldMeet) {
  modRegistry::SaveString(vx::kThemesKey, "1", "C:\\older.vxtheme");  // a write would shift it
  modRegistry::SaveString(vx::kSettingsKey, "Current Theme", "C:\\older.vxtheme");
  std::vector<std::string> keys = vxtest::KeysOf(vxtest::PlanOfListsApply(env));
  keys.push_back(vxtest::kProgramKey);
  const struct { std::vector<std::pair<std::string, std::string>> entries; std::string arguments; DWORD exitCode;
                 const char* logged; } cases[] = {
      {{{"Closed Folder", "C:\\review.dll,4"}}, "/q /n ", vx::kExitOk, "-> \"C:\\review.dll,4\""},
      {{{"Closed Folder", "C:\\review.dll,5"}, {"Busy", "\\\\evil\\s\\busy.ani,0"}}, "/Q -N ", vx::kExitEntryRefused,
       "would refuse: [Pointers] Busy=\\\\evil\\s\\busy.ani,0 (Busy: a network share)"},
      {{{"Busy", "COM1"}}, "/q /n ", vx::kExitNothingLoaded, "nothing in the theme could be loaded"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.arguments + c.logged);
    DeleteFileA(log.c_str());
    WriteTheme(c.entries);
    const std::vector<std::string> before = vxtest::KeysNow(keys);
    EXPECT_EQ(Run(c.arguments + "\"" + theme + "\""), c.exitCode);
    EXPECT_EQ(vxtest::KeysNow(keys), before);
    EXPECT_EQ(GetFileAttributesA(vx::JournalPath().c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(Log().find(c.logged), std::string::npos) << Log();
  }
}

// A theme named without a folder is the one in the current folder, as whoever typed it meant.
TEST_F(ThemeCommandLine, ABareNameIsTheThemeInTheCurrentFolder) {
  WriteTheme({{"Closed Folder", "%WinSysDir%shell32.dll,15"}});
  char old[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, old);
  ASSERT_TRUE(SetCurrentDirectoryA(theme.substr(0, theme.rfind('\\')).c_str()));
  const DWORD code = Run("/q /a \"" + theme.substr(theme.rfind('\\') + 1) + "\"");
  SetCurrentDirectoryA(old);
  EXPECT_EQ(code, static_cast<DWORD>(vx::kExitOk)) << Log();
  EXPECT_EQ(Override("3"), env.systemFolder + "\\shell32.dll,15");
}

}  // namespace
