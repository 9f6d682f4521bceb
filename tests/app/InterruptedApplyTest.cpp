// The real program killed in the middle of an Apply: the next start finds the journal it left, offers
// to put everything back, and does so exactly.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <set>

#include "apply/Journal.h"
#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace {

struct Process {
  PROCESS_INFORMATION pi{};
  ~Process() {
    if (pi.hProcess) {
      if (WaitForSingleObject(pi.hProcess, 0) == WAIT_TIMEOUT) TerminateProcess(pi.hProcess, 1);
      CloseHandle(pi.hProcess);
    }
  }
};

std::unique_ptr<Process> Start() {
  const std::string self = ui::ModulePath();
  std::string cmd(1, '"');
  cmd += self.substr(0, self.rfind('\\'));
  cmd += "\\..\\vexillor.exe\"";
  auto p = std::make_unique<Process>();
  STARTUPINFOA si{};
  si.cb = sizeof si;
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &p->pi)) return nullptr;
  CloseHandle(p->pi.hThread);
  return p;
}

HWND Visible(DWORD pid, const char* className) {
  struct Find { DWORD pid; const char* cls; HWND found; } f{pid, className, nullptr};
  EnumWindows(
      [](HWND h, LPARAM lp) -> BOOL {
        auto* f = reinterpret_cast<Find*>(lp);
        DWORD owner = 0;
        GetWindowThreadProcessId(h, &owner);
        char cls[64] = {};
        GetClassNameA(h, cls, sizeof cls);
        if (owner != f->pid || !IsWindowVisible(h) || std::string(cls) != f->cls) return TRUE;
        f->found = h;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&f));
  return f.found;
}

bool WaitUntil(const std::function<bool()>& done, int ms = 20000) {
  for (int waited = 0; waited < ms; waited += 20) {
    if (done()) return true;
    Sleep(20);
  }
  return false;
}

HWND Child(HWND parent, const std::string& text) {
  for (HWND c = GetWindow(parent, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (ui::GetText(c) == text) return c;
  return nullptr;
}

// The keys an Apply of the lists as the program fills them would write.
std::vector<std::string> KeysOfApply(const vx::Environment& env) {
  ui::Window host;
  host.Create("VxInterruptedHost", 0, WS_POPUP, "", 0, 0, 400, 400, nullptr, nullptr);
  std::array<ui::ListBoxIcons, 10> owned;
  vx::IconLists lists{};
  for (int t : {2, 3, 4, 5, 6, 7, 9}) {
    owned[t].Create(host.hwnd(), 100 + t, 0, 0, 300, 300);
    lists[t] = &owned[t];
  }
  const auto catalogue = vx::Add_Icons(env, lists);
  std::set<std::string> keys;
  for (const vx::Step& s : vx::BuildIconApplyPlan(env, catalogue, vx::ListBoxValues(lists), {})) keys.insert(s.key);
  return {keys.begin(), keys.end()};
}

std::vector<std::string> State(const std::vector<std::string>& keys) {
  std::vector<std::string> v;
  for (const std::string& k : keys) {
    modRegistry::KeyTree t;
    v.push_back(modRegistry::ReadTree(k, t) ? vx::EncodeKeyTree(t) : "missing");
  }
  return v;
}

TEST(InterruptedApply, TheNextStartPutsBackWhatAKilledApplyWrote) {
  const std::vector<std::string> keys = KeysOfApply(vx::DetectEnvironment());
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
  auto first = Start();
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", nullptr);
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", nullptr);
  ASSERT_TRUE(first);
  HWND main = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (main = Visible(first->pi.dwProcessId, "VexillorMain")) != nullptr; }));
  WaitForInputIdle(first->pi.hProcess, 10000);
  DWORD_PTR ignored = 0;
  SendMessageTimeoutA(GetDlgItem(GetDlgItem(main, IDC_PANE), IDC_DEFAULT), BM_CLICK, 0, 0, SMTO_BLOCK, 10000, &ignored);
  PostMessageA(GetDlgItem(main, IDC_APPLY), BM_CLICK, 0, 0);
  ASSERT_TRUE(WaitUntil([&] { return GetFileAttributesA(pause.c_str()) != INVALID_FILE_ATTRIBUTES; }));
  TerminateProcess(first->pi.hProcess, 9);
  WaitForSingleObject(first->pi.hProcess, 10000);
  DeleteFileA(pause.c_str());

  auto record = vx::ReadJournal(journal);
  ASSERT_TRUE(record);
  EXPECT_FALSE(record->complete);
  EXPECT_TRUE(record->done[39]);
  EXPECT_FALSE(record->done[40]);
  EXPECT_NE(State(keys), before);  // half an Apply is in the registry

  // Started again, it offers to put things back; "Yes" does.
  auto second = Start();
  ASSERT_TRUE(second);
  HWND offer = nullptr;
  ASSERT_TRUE(WaitUntil([&] {
    offer = Visible(second->pi.dwProcessId, "#32770");
    return offer && Child(offer, "Yes");
  }));
  PostMessageA(Child(offer, "Yes"), BM_CLICK, 0, 0);
  ASSERT_TRUE(WaitUntil([&] {
    auto r = vx::ReadJournal(journal);
    return r && r->kind == vx::Journal::kUndo && r->complete;
  }));
  EXPECT_EQ(State(keys), before);
  ASSERT_TRUE(WaitUntil([&] { return (main = Visible(second->pi.dwProcessId, "VexillorMain")) != nullptr; }));
  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(second->pi.hProcess, 15000), WAIT_OBJECT_0);
  DeleteFileA(journal.c_str());
}

}  // namespace
