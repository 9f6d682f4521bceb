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

ui::PromptAnswer ScriptedSeam::ShowPrompt(HWND, const ui::PromptRequest& r) {
  prompts.push_back(r);
  return Next(promptAnswers, ui::PromptAnswer{});
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
