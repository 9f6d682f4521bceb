// The real program in a process of its own, driven with window messages as a person would drive it:
// restore one icon to its Windows default, press Apply, answer the rebuild notice, and find every
// value Apply writes in the registry.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <set>

#include "app/Preferences.h"
#include "apply/Executor.h"
#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace {

constexpr const char* kMetricsKey = "HKEY_CURRENT_USER\\Control Panel\\desktop\\WindowMetrics";

struct Found {
  DWORD pid;
  const char* className;
  HWND hwnd;
};

HWND TopWindowOf(DWORD pid, const char* className) {
  Found f{pid, className, nullptr};
  EnumWindows(
      [](HWND h, LPARAM lp) -> BOOL {
        auto* f = reinterpret_cast<Found*>(lp);
        DWORD owner = 0;
        GetWindowThreadProcessId(h, &owner);
        char cls[64] = {};
        GetClassNameA(h, cls, sizeof cls);
        if (owner == f->pid && IsWindowVisible(h) && std::string(cls) == f->className) {
          f->hwnd = h;
          return FALSE;
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&f));
  return f.hwnd;
}

HWND WaitFor(const std::function<HWND()>& find, int ms = 20000) {
  for (int waited = 0; waited < ms; waited += 20) {
    if (HWND h = find()) return h;
    Sleep(20);
  }
  return nullptr;
}

HWND ChildWithText(HWND parent, const std::string& text) {
  for (HWND c = GetWindow(parent, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (ui::GetText(c) == text) return c;
  return nullptr;
}

// The plan the program will carry out, worked out here from the same registry: its keys are what the
// test must put back afterwards, and its values what the registry must hold.
struct Expected {
  vx::Plan plan;
  std::set<std::string> keys;
};

Expected ExpectedApply(const vx::Environment& env, const std::string& restoredKey) {
  HWND host = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 400, 400, nullptr, nullptr, nullptr, nullptr);
  std::vector<std::unique_ptr<ui::ListBoxIcons>> owned;
  vx::IconLists lists{};
  for (int tab = vx::kTabDesktop; tab <= vx::kTabPointers; ++tab) {
    if (tab == vx::kTabExplorer) continue;
    owned.push_back(std::make_unique<ui::ListBoxIcons>());
    owned.back()->Create(host, 100 + tab, 0, 0, 300, 300);
    lists[static_cast<size_t>(tab)] = owned.back().get();
  }
  auto catalogue = vx::Add_Icons(env, lists);
  const vx::IconItem* item = vx::FindItem(catalogue, vx::kTabFolders, restoredKey);
  lists[vx::kTabFolders]->Change(restoredKey, item->defaultFile, static_cast<int16_t>(item->defaultIndex));
  Expected e;
  e.plan = vx::BuildIconApplyPlan(env, catalogue, lists, vx::IconApplyOptions{});
  for (const auto& step : e.plan)
    if (!step.key.empty()) e.keys.insert(step.key);
  owned.clear();
  DestroyWindow(host);
  return e;
}

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

  const Expected expected = ExpectedApply(env, "Closed Folder");
  vxtest::KeySnapshot classKeys(std::vector<std::string>(expected.keys.begin(), expected.keys.end()));

  std::string self = ui::ModulePath();
  std::string exe = self.substr(0, self.rfind('\\')) + "\\..\\vexillor.exe";
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string cmd = "\"" + exe + "\"";
  ASSERT_TRUE(CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi));
  std::unique_ptr<void, void (*)(void*)> process(pi.hProcess, [](void* h) {
    if (WaitForSingleObject(h, 0) == WAIT_TIMEOUT) TerminateProcess(h, 1);
    CloseHandle(h);
  });
  CloseHandle(pi.hThread);

  HWND main = WaitFor([&] { return TopWindowOf(pi.dwProcessId, "VexillorMain"); });
  ASSERT_NE(main, nullptr);
  WaitForInputIdle(pi.hProcess, 10000);
  HWND pane = GetDlgItem(main, IDC_PANE);
  HWND info = GetDlgItem(main, IDC_INFOBAR);
  HWND apply = GetDlgItem(main, IDC_APPLY);
  // The Folders tab opened with its first row, "Closed Folder", selected, showing the stored icon.
  EXPECT_EQ(ui::GetText(info), closedFolderBefore);
  EXPECT_FALSE(IsWindowEnabled(apply));

  DWORD_PTR ignored = 0;
  SendMessageTimeoutA(GetDlgItem(pane, IDC_DEFAULT), BM_CLICK, 0, 0, SMTO_BLOCK, 10000, &ignored);
  EXPECT_EQ(ui::GetText(info), closedFolderDefault);
  EXPECT_TRUE(IsWindowEnabled(apply));
  // Nothing reached the system before Apply.
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), closedFolderBefore);

  PostMessageA(apply, BM_CLICK, 0, 0);
  // The rebuild notice: the real prompt dialog, answered with its OK button.
  HWND notice = WaitFor([&] { return TopWindowOf(pi.dwProcessId, "#32770"); });
  ASSERT_NE(notice, nullptr);
  HWND ok = ChildWithText(notice, "OK");
  ASSERT_NE(ok, nullptr);
  EXPECT_NE(ChildWithText(notice, "Do not show this dialog again"), nullptr);
  PostMessageA(ok, BM_CLICK, 0, 0);
  ASSERT_NE(WaitFor([&] { return IsWindowEnabled(apply) ? nullptr : apply; }), nullptr);

  // Every value of the plan is in the registry as planned: the Shell Icons table (with "16" empty
  // and "3" back at its default), class default icons and names, the pointers, "Current Theme".
  int checked = 0;
  for (const auto& step : expected.plan) {
    if (step.kind != vx::StepKind::SetString) continue;
    EXPECT_EQ(modRegistry::GetString(step.key, step.value), step.text) << vx::Describe(step);
    ++checked;
  }
  EXPECT_GT(checked, 60);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), closedFolderDefault);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "16"), "");
  for (const char* n : {"19", "20", "21", "22", "23", "24", "25", "27", "35", "37", "4", "36", "5", "6", "8", "9",
                        "10", "11", "7", "12", "29", "28", "34", "13", "18", "15", "40", "0", "1", "2"})
    EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, n), env.systemFolder + "\\shell32.dll," + n) << n;
  // Written on NT only, with its own default number; the desktop update's two are not written.
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "42"),
            env.systemFolder + "\\shell32.dll," + std::to_string(env.usersProgramGroupIcon));
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "43"), "Error");
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "44"), "Error");
  // The cache rebuild put a missing icon size back as "32".
  EXPECT_EQ(modRegistry::GetString(kMetricsKey, "Shell Icon Size"), "32");

  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(pi.hProcess, 15000), WAIT_OBJECT_0) << "the program did not end";
}

}  // namespace
