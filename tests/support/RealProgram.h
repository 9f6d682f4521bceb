// The real vexillor.exe in a process of its own, driven through its windows as a person would.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "apply/Step.h"
#include "icons/Catalogue.h"
#include "system/Environment.h"

namespace vxtest {

// Ends the program (killing it if it is still running) when it goes out of scope.
class RealProgram {
 public:
  explicit RealProgram(const std::string& arguments = "");
  ~RealProgram();
  RealProgram(const RealProgram&) = delete;
  RealProgram& operator=(const RealProgram&) = delete;

  bool started() const { return pi_.hProcess != nullptr; }
  HANDLE process() const { return pi_.hProcess; }
  // A visible top-level window of the program with this class ("#32770" for a prompt), waited for.
  HWND Window(const char* className, int ms = 20000) const;
  // True when the program ended within the time; kills it otherwise.
  bool Ended(int ms, DWORD* exitCode = nullptr);
  void Kill();

 private:
  PROCESS_INFORMATION pi_{};
};

bool WaitUntil(const std::function<bool()>& done, int ms = 20000);
HWND ChildWithText(HWND parent, const std::string& text);
// Posts a click to the child of `dialog` with this caption; false when there is none.
bool ClickButton(HWND dialog, const std::string& caption);
// Clicks and waits until the program has handled it.
void ClickAndWait(HWND button);

// The plan an Apply of the icon lists, filled as the program fills them, would carry out; `edit` may
// change the lists first. Its keys are what a test of the real program must put back.
struct ApplyLists {
  const std::vector<vx::IconItem>& catalogue;
  const vx::IconLists& lists;
};
vx::Plan PlanOfListsApply(const vx::Environment& env,
                          const std::function<void(const ApplyLists&)>& edit = {});
std::vector<std::string> KeysOf(const vx::Plan& plan);

}  // namespace vxtest
