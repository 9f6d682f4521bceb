#include "support/ScriptedSeam.h"

namespace vxtest {

ui::PromptAnswer ScriptedSeam::ShowPrompt(HWND, const ui::PromptRequest& r) {
  prompts.push_back(r);
  if (promptAnswers.empty()) return {};
  auto a = promptAnswers.front();
  promptAnswers.pop_front();
  return a;
}

bool ScriptedSeam::ChooseIcon(HWND, std::string& file, int16_t& index) {
  iconAsks.push_back({file, index});
  if (iconChoices.empty()) return false;
  auto c = iconChoices.front();
  iconChoices.pop_front();
  if (!c.ok) return false;
  file = c.file;
  index = c.index;
  return true;
}

int ScriptedSeam::ShowMessage(HWND, const std::string& text, const std::string& title, unsigned flags) {
  messages.push_back({text, title, flags});
  if (messageAnswers.empty()) return IDOK;
  int a = messageAnswers.front();
  messageAnswers.pop_front();
  return a;
}

std::optional<std::string> ScriptedSeam::AskName(HWND, const std::string& label, const std::string& text,
                                                 const std::string& emptyReset) {
  nameAsks.push_back({label, text, emptyReset});
  if (names.empty()) return std::nullopt;
  auto n = names.front();
  names.pop_front();
  return n;
}

bool ScriptedSeam::ShowFileDialog(HWND, ui::FileDialog& d) {
  fileDialogs.push_back(d);
  if (files.empty()) return false;
  auto f = files.front();
  files.pop_front();
  if (!f) return false;
  d.initialFile = *f;
  return true;
}

}  // namespace vxtest
