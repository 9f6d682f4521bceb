#include "support/RealProgram.h"

#include <array>
#include <set>

#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace vxtest {

std::string TestProgram() {
  const std::string self = ui::ModulePath();
  return self.substr(0, self.rfind('\\')) + "\\vexillor_test.exe";
}

RealProgram::RealProgram(const std::string& arguments, const std::string& exe) {
  const std::string self = ui::ModulePath();
  std::string cmd(1, '"');  // built by appending: GCC 12 warns falsely on "\"" + string
  cmd += (exe.empty() ? self.substr(0, self.rfind('\\')) + "\\..\\vexillor.exe" : exe) + "\"";
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

namespace {
struct FindWindowOf {
  DWORD pid;
  const char* cls;
  HWND found;
};
// A named callback: on 32-bit Windows a lambda does not convert to a WINAPI (stdcall) pointer.
BOOL CALLBACK FindWindowStep(HWND h, LPARAM lp) {
  auto* f = reinterpret_cast<FindWindowOf*>(lp);
  DWORD owner = 0;
  GetWindowThreadProcessId(h, &owner);
  char cls[64] = {};
  GetClassNameA(h, cls, sizeof cls);
  if (owner != f->pid || !IsWindowVisible(h) || std::string(cls) != f->cls) return TRUE;
  f->found = h;
  return FALSE;
}
}  // namespace

HWND RealProgram::Window(const char* className, int ms) const {
  FindWindowOf f{pi_.dwProcessId, className, nullptr};
  WaitUntil([&] {
    EnumWindows(FindWindowStep, reinterpret_cast<LPARAM>(&f));
    return f.found != nullptr;
  }, pi_.hProcess ? ms : 0);
  return f.found;
}

HWND RealProgram::Main() const {
  HWND main = Window("VexillorMain");
  WaitForInputIdle(pi_.hProcess, 10000);
  return main;
}

bool RealProgram::Close() {
  PostMessageA(Main(), WM_CLOSE, 0, 0);
  return Ended(15000);
}

std::vector<std::string> RealProgram::ApplyAndAnswer() {
  std::vector<std::string> asked;
  HWND apply = GetDlgItem(Main(), IDC_APPLY);
  PostMessageA(apply, BM_CLICK, 0, 0);
  for (int waited = 0; waited < 30000 && IsWindowEnabled(apply); waited += 100) {
    if (HWND prompt = Window("#32770", 0)) {
      asked.push_back(DialogText(prompt));
      Press(prompt, ChildWithText(prompt, "No") ? "No" : "OK");
    } else {
      Sleep(100);
    }
  }
  return asked;
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

std::string DialogText(HWND dialog) {
  std::string all;
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) all += ui::GetText(c) + "\n";
  return all;
}

bool Press(HWND prompt, const std::string& caption) {
  return ClickButton(prompt, caption) && WaitUntil([&] { return !IsWindow(prompt) || !IsWindowVisible(prompt); });
}

bool ClickButton(HWND dialog, const std::string& caption) {
  const HWND button = ChildWithText(dialog, caption);
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

std::map<std::string, std::string> RunProbe(const std::string& probe, const std::string& edition,
                                            const char* section, int ms) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string self = ui::ModulePath(), stem = probe.substr(0, probe.rfind('.'));
  // Wine picks the edition by the file name, so each edition runs a copy of its own.
  const std::string name = stem + "_" + (edition.empty() ? std::string("default") : edition) + ".exe";
  const std::string copy = std::string(temp) + name, out = copy + ".ini";
  CopyFileA((self.substr(0, self.rfind('\\') + 1) + probe).c_str(), copy.c_str(), FALSE);
  const std::string appKey = "HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\" + name;
  DeleteTree(appKey);
  if (!edition.empty()) modRegistry::SaveString(appKey, "Version", edition);
  DeleteFileA(out.c_str());
  std::string quoted(1, '"');
  RealProgram(quoted + out + "\"", copy).Ended(ms);
  // The section comes back as "name=value" strings, each ended by a NUL.
  std::map<std::string, std::string> values;
  std::string text(32768, '\0');
  text.resize(GetPrivateProfileSectionA(section, text.data(), 32768, out.c_str()));
  for (size_t start = 0, end; start < text.size(); start = end + 1) {
    end = text.find('\0', start);
    const std::string line = text.substr(start, end - start);
    const auto eq = line.find('=');
    if (eq != std::string::npos) values[line.substr(0, eq)] = line.substr(eq + 1);
  }
  DeleteFileA(out.c_str());
  DeleteFileA(copy.c_str());
  DeleteTree(appKey);
  return values;
}

}  // namespace vxtest
