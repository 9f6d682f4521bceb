#include "support/RealProgram.h"

#include <array>
#include <set>

#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace vxtest {

RealProgram::RealProgram(const std::string& arguments) {
  const std::string self = ui::ModulePath();
  std::string cmd(1, '"');  // built by appending: GCC 12 warns falsely on "\"" + string
  cmd += self.substr(0, self.rfind('\\')) + "\\..\\vexillor.exe\"";
  if (!arguments.empty()) cmd += " " + arguments;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi_)) pi_ = {};
  if (pi_.hThread) CloseHandle(pi_.hThread);
}

RealProgram::~RealProgram() {
  if (!pi_.hProcess) return;
  Kill();
  CloseHandle(pi_.hProcess);
}

void RealProgram::Kill() {
  if (pi_.hProcess && WaitForSingleObject(pi_.hProcess, 0) == WAIT_TIMEOUT) {
    TerminateProcess(pi_.hProcess, 99);
    WaitForSingleObject(pi_.hProcess, 10000);
  }
}

bool RealProgram::Ended(int ms, DWORD* exitCode) {
  if (!pi_.hProcess) return false;
  const bool ended = WaitForSingleObject(pi_.hProcess, ms) == WAIT_OBJECT_0;
  if (!ended) Kill();
  if (exitCode) GetExitCodeProcess(pi_.hProcess, exitCode);
  return ended;
}

HWND RealProgram::Window(const char* className, int ms) const {
  struct Find { DWORD pid; const char* cls; HWND found; } f{pi_.dwProcessId, className, nullptr};
  WaitUntil([&] {
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
    return f.found != nullptr;
  }, pi_.hProcess ? ms : 0);
  return f.found;
}

bool WaitUntil(const std::function<bool()>& done, int ms) {
  for (int waited = 0;; waited += 20) {
    if (done()) return true;
    if (waited >= ms) return false;
    Sleep(20);
  }
}

HWND ChildWithText(HWND parent, const std::string& text) {
  for (HWND c = GetWindow(parent, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (ui::GetText(c) == text) return c;
  return nullptr;
}

bool ClickButton(HWND dialog, const std::string& caption) {
  HWND button = ChildWithText(dialog, caption);
  return button && PostMessageA(button, BM_CLICK, 0, 0);
}

void ClickAndWait(HWND button) {
  DWORD_PTR ignored = 0;
  SendMessageTimeoutA(button, BM_CLICK, 0, 0, SMTO_BLOCK, 10000, &ignored);
}

vx::Plan PlanOfListsApply(const vx::Environment& env, const std::function<void(const ApplyLists&)>& edit) {
  ui::Window host;
  host.Create("VxTestListsHost", 0, WS_POPUP, "", 0, 0, 400, 400, nullptr, nullptr);
  std::array<ui::ListBoxIcons, 10> owned;
  vx::IconLists lists{};
  for (int t : {2, 3, 4, 5, 6, 7, 9}) {
    owned[t].Create(host.hwnd(), 100 + t, 0, 0, 300, 300);
    lists[t] = &owned[t];
  }
  const auto catalogue = vx::Add_Icons(env, lists);
  if (edit) edit(ApplyLists{catalogue, lists});
  return vx::BuildIconApplyPlan(env, catalogue, lists, vx::IconApplyOptions{});
}

std::vector<std::string> KeysOf(const vx::Plan& plan) {
  std::set<std::string> keys;
  for (const vx::Step& s : plan)
    if (!s.key.empty()) keys.insert(s.key);
  return {keys.begin(), keys.end()};
}

}  // namespace vxtest
