// The real program in a process of its own, driven with window messages as a person would drive it:
// restore one icon to its Windows default, press Apply, answer the rebuild notice, and find every
// value Apply writes in the registry.
#include <gtest/gtest.h>
#include <windows.h>

#include "app/Preferences.h"
#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace {

constexpr const char* kMetricsKey = "HKEY_CURRENT_USER\\Control Panel\\desktop\\WindowMetrics";

TEST(EndToEnd, RestoreOneIconApplyAndFindEveryWrite) {
  const vx::Environment env = vx::DetectEnvironment();
  const std::string closedFolderDefault = env.systemFolder + "\\shell32.dll,3";
  const std::string closedFolderBefore = env.systemFolder + "\\shell32.dll,5";

  // Everything Apply may touch is put back when the test ends, whatever happens.
  vxtest::KeySnapshot shellIcons({vx::kShellIconsKey, kMetricsKey, vx::kCursorsKey});
  vxtest::RegistryScope prefs({vx::kProgramKey});
  vxtest::DeleteTree(vx::kShellIconsKey);
  modRegistry::SaveString(vx::kShellIconsKey, "3", closedFolderBefore);
  modRegistry::DeleteValue(kMetricsKey, "Shell Icon Size");
  modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", vx::kTabFolders);

  // The plan the program will carry out, worked out here from the same registry.
  const vx::Plan plan = vxtest::PlanOfListsApply(env, [](const vxtest::ApplyLists& a) {
    const vx::IconItem* item = vx::FindItem(a.catalogue, vx::kTabFolders, "Closed Folder");
    a.lists[vx::kTabFolders]->Change("Closed Folder", item->defaultFile, static_cast<int16_t>(item->defaultIndex));
  });
  vxtest::KeySnapshot classKeys(vxtest::KeysOf(plan));

  vxtest::RealProgram program;
  HWND main = program.Window("VexillorMain");
  ASSERT_NE(main, nullptr);
  WaitForInputIdle(program.process(), 10000);
  HWND pane = GetDlgItem(main, IDC_PANE);
  HWND info = GetDlgItem(main, IDC_INFOBAR);
  HWND apply = GetDlgItem(main, IDC_APPLY);
  // The Folders tab opened with its first row, "Closed Folder", selected, showing the stored icon.
  EXPECT_EQ(ui::GetText(info), closedFolderBefore);
  EXPECT_FALSE(IsWindowEnabled(apply));

  vxtest::ClickAndWait(GetDlgItem(pane, IDC_DEFAULT));
  EXPECT_EQ(ui::GetText(info), closedFolderDefault);
  EXPECT_TRUE(IsWindowEnabled(apply));
  // Nothing reached the system before Apply.
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), closedFolderBefore);

  PostMessageA(apply, BM_CLICK, 0, 0);
  // The rebuild notice: the real prompt dialog, answered with its OK button.
  HWND notice = program.Window("#32770");
  ASSERT_NE(notice, nullptr);
  EXPECT_NE(vxtest::ChildWithText(notice, "Do not show this dialog again"), nullptr);
  ASSERT_TRUE(vxtest::ClickButton(notice, "OK"));
  ASSERT_TRUE(vxtest::WaitUntil([&] { return !IsWindowEnabled(apply); }));

  // Every value of the plan is in the registry: Shell Icons, class icons and names, pointers, "Current Theme".
  int checked = 0;
  for (const auto& step : plan) {
    if (step.kind != vx::StepKind::SetString) continue;
    EXPECT_EQ(modRegistry::GetString(step.key, step.value), step.text) << vx::Describe(step);
    ++checked;
  }
  EXPECT_GT(checked, 60);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), closedFolderDefault);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "16"), "");
  // The cache rebuild put a missing icon size back as "32".
  EXPECT_EQ(modRegistry::GetString(kMetricsKey, "Shell Icon Size"), "32");

  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(program.Ended(15000)) << "the program did not end";
}

}  // namespace
