// "/q /undo" and "/q /n THEME" with the real program: no window, exit codes, and what the log says.
#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>

#include <fstream>
#include <sstream>

#include "app/CommandLine.h"
#include "app/Main.h"
#include "apply/Journal.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/win.h"

namespace {

DWORD RunProgram(const std::string& arguments) {
  const std::string self = ui::ModulePath();
  std::string cmd(1, '"');
  cmd += self.substr(0, self.rfind('\\'));
  cmd += "\\..\\vexillor.exe\" " + arguments;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return 999;
  CloseHandle(pi.hThread);
  DWORD code = 998;
  if (WaitForSingleObject(pi.hProcess, 60000) == WAIT_OBJECT_0) GetExitCodeProcess(pi.hProcess, &code);
  else TerminateProcess(pi.hProcess, 1);
  CloseHandle(pi.hProcess);
  return code;
}

std::string Log() {
  std::ifstream f(vx::DefaultLogPath());
  std::stringstream s;
  s << f.rdbuf();
  return s.str();
}

TEST(UndoCommandLine, QuietUndoTakesTheLastApplyBackAndQuietReviewWritesNothing) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES};
  InitCommonControlsEx(&icc);
  vxtest::RegistryScope prefs{{vx::kProgramKey}};
  vxtest::KeySnapshot keys({vx::kShellIconsKey, vx::kCursorsKey, vx::kWindowMetricsKey});
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  DeleteFileA(vx::JournalPath().c_str());
  DeleteFileA(vx::DefaultLogPath().c_str());
  EXPECT_EQ(RunProgram("/q /undo"), static_cast<DWORD>(vx::kExitNothingToUndo));

  modRegistry::SaveString(vx::kShellIconsKey, "3", "C:\\before.dll,2");
  {
    vx::Main m;
    ASSERT_TRUE(m.Create(vx::DetectEnvironment(), "", false));
    m.SelectTab(vx::kTabFolders);
    m.OnCommand(IDC_DEFAULT);  // Closed Folder back to its default
    m.OnCommand(IDC_APPLY);
    ASSERT_TRUE(m.lastApply().ok());
  }
  const std::string applied = modRegistry::GetString(vx::kShellIconsKey, "3");
  ASSERT_NE(applied, "C:\\before.dll,2");
  EXPECT_EQ(RunProgram("/q /undo"), 0u);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), "C:\\before.dll,2");
  EXPECT_EQ(RunProgram("/q /undo"), 0u);  // the undo taken back: the Apply again
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), applied);

  // A theme reviewed: its change listed in the log, nothing written.
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string theme = std::string(temp) + "Review.vxtheme";
  WritePrivateProfileStringA("Folder Icons", "Closed Folder", "C:\\review.dll,4", theme.c_str());
  EXPECT_EQ(RunProgram("/q /n " + theme), 0u);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), applied);
  EXPECT_NE(Log().find("Closed Folder icon): \"" + applied + "\" -> \"C:\\review.dll,4\""), std::string::npos) << Log();
  DeleteFileA(theme.c_str());
  DeleteFileA(vx::JournalPath().c_str());
}

}  // namespace
