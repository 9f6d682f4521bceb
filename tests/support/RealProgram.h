// The real vexillor.exe in a process of its own, driven through its windows as a person would.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "apply/Step.h"
#include "icons/Catalogue.h"
#include "system/Environment.h"

namespace vxtest {

// The test build of the program (vexillor_test.exe: the same code, plus the pause hook tests use).
std::string TestProgram();

// Ends the program (killing it if it is still running) when it goes out of scope. `exe` (a full path)
// runs another program the same way.
class RealProgram {
 public:
  explicit RealProgram(const std::string& arguments = "", const std::string& exe = "");
  ~RealProgram();
  RealProgram(const RealProgram&) = delete;
  RealProgram& operator=(const RealProgram&) = delete;

  // A visible top-level window of the program with this class ("#32770" for a prompt), waited for.
  HWND Window(const char* className, int ms = 20000) const;
  // The main window once the program is idle; nullptr when none came.
  HWND Main() const;
  // True when the program ended within the time; kills it otherwise.
  bool Ended(int ms, DWORD* exitCode = nullptr);
  // Closes the main window as the close box does; true when the program then ended.
  bool Close();
  void Kill();
  // Presses Apply and answers its prompts (OK, or No to a restart offer) until Apply greys; their texts.
  std::vector<std::string> ApplyAndAnswer();

 private:
  PROCESS_INFORMATION pi_{};
};

bool WaitUntil(const std::function<bool()>& done, int ms = 20000);
HWND ChildWithText(HWND parent, const std::string& text);
// The captions of a dialog's controls, one a line.
std::string DialogText(HWND dialog);
// Posts a click to the child of `dialog` with this caption; false when there is none.
bool ClickButton(HWND dialog, const std::string& caption);
// Clicks a prompt's button and waits for the prompt to go; false when there is no such button.
bool Press(HWND prompt, const std::string& caption);
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

// Runs a copy of a probe beside the tests under an emulated edition ("win98"; "" for Wine's default) and
// returns the section it wrote to the profile file named on its command line (empty if it did not run).
std::map<std::string, std::string> RunProbe(const std::string& probe, const std::string& edition,
                                            const char* section, int ms = 30000);

}  // namespace vxtest
