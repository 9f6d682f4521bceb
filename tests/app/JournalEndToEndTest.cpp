// The journal against what really happens to a user: the program stopped in the middle of an Apply or
// of its icon cache rebuild, a logon script's quiet run after it, and a second start meanwhile.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>

#include "app/CommandLine.h"
#include "apply/Journal.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"

namespace {

using namespace vx;

class StoppedApply : public ::testing::Test {
 protected:
  StoppedApply() {
    char temp[MAX_PATH] = {};
    const std::string dir(temp, GetTempPathA(MAX_PATH, temp));
    pause = dir + "vexillor-paused";
    theme = dir + "vx after power cut.vxtheme";
    for (const std::string& f : {pause, theme, vx::DefaultLogPath()}) DeleteFileA(f.c_str());
    RemoveJournal(JournalPath());
    modRegistry::SaveDword(kSettingsKey, "Dialog Rebuild", 1);
    modRegistry::SaveString(kWindowMetricsKey, "Shell Icon Size", "32");
    // The program's own preferences change with every start; what Apply writes elsewhere is compared.
    for (const std::string& k : keys)
      if (k.rfind(kProgramKey, 0) != 0) shell.push_back(k);
    shell.push_back(kWindowMetricsKey);
  }
  ~StoppedApply() override {
    for (const std::string& f : {pause, theme}) DeleteFileA(f.c_str());
    RemoveJournal(JournalPath());
  }
  // Starts the test build paused at `step`, presses Default Icon and Apply, and waits for the pause.
  std::unique_ptr<vxtest::RealProgram> StartPaused(const char* step) {
    SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", step);
    SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", pause.c_str());
    auto p = std::make_unique<vxtest::RealProgram>("", vxtest::TestProgram());
    SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", nullptr);
    SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", nullptr);
    HWND main = p->Main();
    EXPECT_NE(main, nullptr);
    if (!main) return p;
    vxtest::ClickAndWait(GetDlgItem(GetDlgItem(main, IDC_PANE), IDC_DEFAULT));
    PostMessageA(GetDlgItem(main, IDC_APPLY), BM_CLICK, 0, 0);
    EXPECT_TRUE(vxtest::WaitUntil([&] { return GetFileAttributesA(pause.c_str()) != INVALID_FILE_ATTRIBUTES; }));
    return p;
  }
  static DWORD Run(const std::string& arguments) {
    DWORD code = 999;
    EXPECT_TRUE(vxtest::RealProgram(arguments).Ended(60000, &code)) << arguments;
    return code;
  }
  static std::string Log() {
    std::ifstream in(vx::DefaultLogPath());
    return {std::istreambuf_iterator<char>(in), {}};
  }

  const std::vector<std::string> keys = vxtest::KeysOf(vxtest::PlanOfListsApply(DetectEnvironment()));
  std::vector<std::string> shell;
  vxtest::KeySnapshot snapshot{keys}, metrics{{kWindowMetricsKey}};
  vxtest::RegistryScope prefs{{kProgramKey}};
  std::string pause, theme;
};

// A logon script's "/q /a" started while an Apply hangs half-way: it waits for that program, which is
// then killed, puts back what the killed Apply wrote, and only then applies its theme; so the theme's
// own undo leads back to the state before either. A second start with a window meanwhile only brings
// the running one forward.
TEST_F(StoppedApply, AQuietApplyAfterAKilledOnePutsItBackFirst) {
  const auto before = vxtest::KeysNow(shell);
  auto first = StartPaused("40");
  ASSERT_NE(first->Main(), nullptr);
  EXPECT_NE(vxtest::KeysNow(shell), before);  // half an Apply is in the registry

  DWORD code = 999;
  EXPECT_TRUE(vxtest::RealProgram().Ended(20000, &code));  // the second start ends at once
  EXPECT_EQ(code, 0u);

  WritePrivateProfileStringA("Folder Icons", "Closed Folder", "C:\\after.dll,4", theme.c_str());
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, theme.c_str());
  vxtest::RealProgram quiet("/q /a \"" + theme + "\"");
  ASSERT_TRUE(vxtest::WaitUntil([] { return Log().find("another Vexillor is running") != std::string::npos; }));
  first->Kill();
  ASSERT_TRUE(quiet.Ended(60000, &code));
  const std::string log = Log();
  EXPECT_EQ(code, 0u) << log;
  const size_t putBack = log.find("put back"), opened = log.find("opened: ");
  ASSERT_NE(putBack, std::string::npos) << log;
  EXPECT_LT(log.find("an Apply was cut off"), putBack);
  EXPECT_LT(putBack, opened) << log;
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "C:\\after.dll,4");

  EXPECT_EQ(Run("/q /undo"), 0u) << Log();
  EXPECT_EQ(vxtest::KeysNow(shell), before);
}

// Killed while the icon cache rebuild has the icon size one up: the next start's recovery puts the
// size back with everything else.
TEST_F(StoppedApply, KilledInTheCacheRebuildTheIconSizeComesBack) {
  const auto before = vxtest::KeysNow(shell);
  auto first = StartPaused("rebuild");
  first->Kill();
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size"), "33");
  const auto record = ReadJournal(JournalPath());
  ASSERT_TRUE(record);
  EXPECT_FALSE(record->complete);  // the mark follows the rebuild

  vxtest::RealProgram second;
  HWND offer = nullptr;
  ASSERT_TRUE(vxtest::WaitUntil([&] { return (offer = second.Window("#32770", 0)) != nullptr; }));
  EXPECT_NE(vxtest::DialogText(offer).find("stopped before it had finished applying"), std::string::npos);
  ASSERT_TRUE(vxtest::Press(offer, "Yes"));
  ASSERT_TRUE(vxtest::WaitUntil([] {
    const auto r = ReadJournal(JournalPath());
    return r && r->kind == Journal::kUndo && r->complete;
  }));
  EXPECT_TRUE(second.Close());
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size"), "32");
  EXPECT_EQ(vxtest::KeysNow(shell), before);
}

}  // namespace
