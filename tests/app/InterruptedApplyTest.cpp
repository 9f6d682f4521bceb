// The real program killed in the middle of an Apply: the next start finds the journal it left, offers
// to put everything back, and does so exactly.
#include <gtest/gtest.h>
#include <windows.h>

#include "apply/Executor.h"
#include "apply/Journal.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"

namespace {

std::vector<std::string> State(const std::vector<std::string>& keys) {
  std::vector<std::string> v;
  for (const std::string& k : keys) {
    modRegistry::KeyTree t;
    v.push_back(modRegistry::ReadTree(k, t) ? vx::EncodeKeyTree(t) : "missing");
  }
  return v;
}

TEST(InterruptedApply, TheNextStartPutsBackWhatAKilledApplyWrote) {
  const std::vector<std::string> keys = vxtest::KeysOf(vxtest::PlanOfListsApply(vx::DetectEnvironment()));
  vxtest::KeySnapshot snapshot(keys);
  vxtest::RegistryScope prefs({vx::kProgramKey});
  modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", vx::kTabFolders);
  modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  const std::string journal = vx::JournalPath();
  DeleteFileA(journal.c_str());
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string pause = std::string(temp) + "vexillor-paused";
  DeleteFileA(pause.c_str());
  const auto before = State(keys);

  // The program pauses before step 40 of its Apply (past the desktop, Start and folder writes).
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", "40");
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", pause.c_str());
  vxtest::RealProgram first;
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", nullptr);
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", nullptr);
  HWND main = first.Window("VexillorMain");
  ASSERT_NE(main, nullptr);
  WaitForInputIdle(first.process(), 10000);
  vxtest::ClickAndWait(GetDlgItem(GetDlgItem(main, IDC_PANE), IDC_DEFAULT));
  PostMessageA(GetDlgItem(main, IDC_APPLY), BM_CLICK, 0, 0);
  ASSERT_TRUE(vxtest::WaitUntil([&] { return GetFileAttributesA(pause.c_str()) != INVALID_FILE_ATTRIBUTES; }));
  first.Kill();
  DeleteFileA(pause.c_str());

  auto record = vx::ReadJournal(journal);
  ASSERT_TRUE(record);
  EXPECT_FALSE(record->complete);
  EXPECT_TRUE(record->done[39]);
  EXPECT_FALSE(record->done[40]);
  EXPECT_NE(State(keys), before);  // half an Apply is in the registry

  // Started again, it offers to put things back; "Yes" does.
  vxtest::RealProgram second;
  HWND offer = nullptr;
  ASSERT_TRUE(vxtest::WaitUntil([&] { return (offer = second.Window("#32770", 0)) && vxtest::ClickButton(offer, "Yes"); }));
  ASSERT_TRUE(vxtest::WaitUntil([&] {
    auto r = vx::ReadJournal(journal);
    return r && r->kind == vx::Journal::kUndo && r->complete;
  }));
  EXPECT_EQ(State(keys), before);
  ASSERT_NE(main = second.Window("VexillorMain"), nullptr);
  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(second.Ended(15000));
  DeleteFileA(journal.c_str());
}

}  // namespace
