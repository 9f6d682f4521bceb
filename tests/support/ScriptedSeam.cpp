#include "support/ScriptedSeam.h"

namespace vxtest {

namespace {

// The next scripted answer, or `none` when the script has run out.
template <typename T>
T Next(std::deque<T>& script, T none) {
  if (script.empty()) return none;
  T next = std::move(script.front());
  script.pop_front();
  return next;
}

}  // namespace

// Clicks the button of a caption in the prompt of this thread once it is shown; a prompt without such
// a button is closed after a while, so that a test cannot hang.
struct Presser {
  static inline std::string caption;
  static inline int ticks = 0;
  static void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND dialog = FindWindowA("#32770", "Vexillor");
    if (!dialog || !IsWindowVisible(dialog) || GetWindowThreadProcessId(dialog, nullptr) != GetCurrentThreadId()) {
      if (++ticks > 400) KillTimer(nullptr, timer);
      return;
    }
    KillTimer(nullptr, timer);
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      char text[128] = {};
      GetWindowTextA(child, text, sizeof text);
      if (caption == text && IsWindowVisible(child)) {
        SendMessageA(child, BM_CLICK, 0, 0);
        return;
      }
    }
    EndDialog(dialog, IDCANCEL);
  }
};

ui::PromptAnswer ScriptedSeam::ShowPrompt(HWND owner, const ui::PromptRequest& r) {
  prompts.push_back(r);
  if (presses.empty()) return Next(promptAnswers, ui::PromptAnswer{});
  Presser::caption = Next(presses, std::string());
  Presser::ticks = 0;
  SetTimer(nullptr, 0, 25, &Presser::Tick);
  return ui::RealSeam().ShowPrompt(owner, r);
}

bool ScriptedSeam::ChooseIcon(HWND, std::string& file, int16_t& index) {
  iconAsks.push_back({file, index});
  const IconChoice c = Next(iconChoices, IconChoice{false, "", 0});
  if (c.ok) file = c.file, index = c.index;
  return c.ok;
}

int ScriptedSeam::ShowMessage(HWND, const std::string& text, const std::string& title, unsigned flags) {
  messages.push_back({text, title, flags});
  return Next(messageAnswers, static_cast<int>(IDOK));
}

std::optional<std::string> ScriptedSeam::AskName(HWND, const std::string& label, const std::string& text,
                                                 const std::string& emptyReset) {
  nameAsks.push_back({label, text, emptyReset});
  return Next(names, std::optional<std::string>{});
}

bool ScriptedSeam::ShowFileDialog(HWND, ui::FileDialog& d) {
  fileDialogs.push_back(d);
  const std::optional<std::string> f = Next(files, std::optional<std::string>{});
  if (f) d.initialFile = *f;
  return f.has_value();
}

}  // namespace vxtest
