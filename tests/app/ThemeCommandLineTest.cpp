// The real program started as a logon script or a fleet tool starts it: "/a" applies a theme and ends,
// "/q" does it without a single window and says in its exit code and log what happened.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>

#include "app/CommandLine.h"
#include "registry/modRegistry.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"

namespace {

constexpr const char* kMetricsKey = "HKEY_CURRENT_USER\\Control Panel\\desktop\\WindowMetrics";

std::vector<std::string> LogLines(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

size_t Count(const std::vector<std::string>& lines, const std::string& part) {
  size_t n = 0;
  for (const auto& l : lines) n += l.find(part) != std::string::npos;
  return n;
}

class ThemeCommandLine : public ::testing::Test {
 protected:
  ThemeCommandLine() : env(vx::DetectEnvironment()), saved(Keys(env)) {
    char temp[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, temp);
    theme = std::string(temp) + "vx command line.vxtheme";
    log = vx::DefaultLogPath();
    DeleteFileA(log.c_str());
    // The rebuild notice is switched off as a user would, so the plain "/a" runs need no answer.
    modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  }
  ~ThemeCommandLine() override {
    DeleteFileA(theme.c_str());
    DeleteFileA(log.c_str());
  }
  void WriteTheme(const std::vector<std::pair<std::string, std::string>>& entries) {
    DeleteFileA(theme.c_str());
    for (const auto& [key, value] : entries)
      WritePrivateProfileStringA(key == "Busy" ? "Pointers" : "Folder Icons", key.c_str(), value.c_str(),
                                 theme.c_str());
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, theme.c_str());
  }
  // Every key an Apply of this machine's lists writes, so the test can put all of it back.
  static std::vector<std::string> Keys(const vx::Environment& env) {
    std::vector<std::string> keys = vxtest::KeysOf(vxtest::PlanOfListsApply(env));
    keys.insert(keys.end(), {vx::kShellIconsKey, vx::kCursorsKey, kMetricsKey});
    return keys;
  }
  std::string Override(const char* number) { return modRegistry::GetString(vx::kShellIconsKey, number); }

  const vx::Environment env;
  vxtest::KeySnapshot saved;
  vxtest::RegistryScope prefs{{vxtest::kProgramKey}};
  std::string theme, log;
};

TEST_F(ThemeCommandLine, ApplySwitchAppliesAndEnds) {
  modRegistry::SaveString(vx::kShellIconsKey, "3", env.systemFolder + "\\shell32.dll,3");
  WriteTheme({{"Closed Folder", "%WinSysDir%shell32.dll,7"}, {"Open Folder", "%WinSysDir%shell32.dll,8"}});
  DWORD exitCode = 1;
  ASSERT_TRUE(vxtest::RealProgram("/a " + theme).Ended(60000, &exitCode)) << "the program did not end";
  EXPECT_EQ(exitCode, 0u);
  EXPECT_EQ(Override("3"), env.systemFolder + "\\shell32.dll,7");
  EXPECT_EQ(Override("4"), env.systemFolder + "\\shell32.dll,8");
  EXPECT_EQ(modRegistry::GetString(vx::kSettingsKey, "Current Theme"), theme);
  EXPECT_TRUE(LogLines(log).empty());  // only a quiet run keeps a log
}

TEST_F(ThemeCommandLine, QuietRunsSayWhatHappened) {
  const struct {
    const char* name;
    std::vector<std::pair<std::string, std::string>> entries;
    std::string arguments;
    DWORD exitCode;
    const char* closedFolder;  // "3" afterwards, "" when unchanged
    const char* logged;
  } cases[] = {
      {"applied", {{"Closed Folder", "%WinSysDir%shell32.dll,9"}}, "/q /a ", vx::kExitOk, "shell32.dll,9",
       "write: set string"},
      {"refused", {{"Closed Folder", "%WinSysDir%shell32.dll,10"}, {"Busy", "\\\\evil\\share\\busy.ani,0"}},
       "/q /a ", vx::kExitEntryRefused, "shell32.dll,10", "refused: [Pointers] Busy=\\\\evil\\share\\busy.ani,0"},
      {"missing", {}, "/q /a C:\\nowhere\\gone.vxtheme", vx::kExitThemeNotOpened, "", "theme not opened"},
      {"not a theme", {}, "/q /a C:\\x.txt", vx::kExitThemeNotOpened, "", "The file x.txt does not appear"},
      {"no /a", {{"Closed Folder", "%WinSysDir%shell32.dll,11"}}, "/q ", vx::kExitNotApplied, "", "opened: "},
      {"no theme", {}, "/q", vx::kExitThemeNotOpened, "", "no theme given"},
  };
  for (const auto& c : cases) {
    const std::string before = env.systemFolder + "\\shell32.dll,3";
    modRegistry::SaveString(vx::kShellIconsKey, "3", before);
    DeleteFileA(log.c_str());
    WriteTheme(c.entries);
    DWORD exitCode = 99;
    vxtest::RealProgram run(c.entries.empty() ? c.arguments : c.arguments + "\"" + theme + "\"");
    ASSERT_TRUE(run.Ended(60000, &exitCode)) << c.name << ": a quiet run left a window open";
    EXPECT_EQ(exitCode, c.exitCode) << c.name;
    EXPECT_EQ(Override("3"), *c.closedFolder ? env.systemFolder + "\\" + c.closedFolder : before) << c.name;
    const auto lines = LogLines(log);
    EXPECT_GE(Count(lines, c.logged), 1u) << c.name;
    EXPECT_EQ(Count(lines, "write: ") > 0, *c.closedFolder != 0) << c.name;
    EXPECT_EQ(Count(lines, "finished; exit code " + std::to_string(c.exitCode)) +
                  Count(lines, "no theme given; exit code"),
              1u)
        << c.name;
  }
}

}  // namespace
