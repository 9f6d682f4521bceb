#pragma once
// A seam that answers from a script and records what the program asked; SeamScope installs it.
#include <deque>
#include <string>
#include <vector>

#include "ui/seam.h"

namespace vxtest {

class ScriptedSeam : public ui::Seam {
 public:
  // Answers, consumed in order. A prompt with no scripted answer gets slot 0 and no tick.
  std::deque<ui::PromptAnswer> promptAnswers;
  // Buttons to press, consumed in order before promptAnswers: the prompt is shown as the real dialog
  // and the button of that caption clicked in it, so what the dialog itself does is seen too.
  std::deque<std::string> presses;
  struct IconChoice { bool ok; std::string file; int16_t index; };
  std::deque<IconChoice> iconChoices;
  std::deque<std::optional<std::string>> names;
  std::deque<std::optional<std::string>> files;  // nullopt = cancelled

  // What was asked.
  std::vector<ui::PromptRequest> prompts;
  struct IconAsk { std::string file; int16_t index; };
  std::vector<IconAsk> iconAsks;
  struct NameAsk { std::string label, text, emptyReset; };
  std::vector<NameAsk> nameAsks;
  std::vector<ui::FileDialog> fileDialogs;
  std::vector<std::string> opened, commands;
  struct HelpCall { std::string file; unsigned command; std::string keyword; };
  std::vector<HelpCall> helpCalls;
  std::vector<bool> restarts;

  ui::PromptAnswer ShowPrompt(HWND, const ui::PromptRequest& r) override;
  bool ChooseIcon(HWND, std::string& file, int16_t& index) override;
  std::optional<std::string> AskName(HWND, const std::string& label, const std::string& text,
                                     const std::string& emptyReset) override;
  std::vector<ui::AboutRequest> abouts;
  void ShowAbout(HWND, const ui::AboutRequest& a) override { abouts.push_back(a); }
  struct Message { std::string text, title; unsigned flags; };
  std::vector<Message> messages;
  std::deque<int> messageAnswers;  // default IDOK
  int ShowMessage(HWND, const std::string& text, const std::string& title, unsigned flags) override;
  bool ShowFileDialog(HWND, ui::FileDialog& d) override;
  struct Review { std::string heading; std::vector<ui::ReviewRow> rows; };
  std::vector<Review> reviews;
  void ShowReview(HWND, const std::string& h, const std::vector<ui::ReviewRow>& rows) override { reviews.push_back({h, rows}); }
  void ShellOpen(HWND, const std::string& target) override { opened.push_back(target); }
  void RunCommand(const std::string& c) override { commands.push_back(c); }
  void OpenHelp(HWND, const std::string& f, unsigned c, const std::string& k) override { helpCalls.push_back({f, c, k}); }
  void RestartWindows(bool privilege) override { restarts.push_back(privilege); }
  std::vector<std::string> elevated;  // "exe parameters" of each start as administrator
  bool elevationStarts = true;
  bool RunAsAdministrator(HWND, const std::string& exe, const std::string& p) override {
    elevated.push_back(exe + " " + p);
    return elevationStarts;
  }
};

// Installs a seam for the life of the scope.
class SeamScope {
 public:
  explicit SeamScope(ui::Seam& s) { ui::SetSeam(&s); }
  ~SeamScope() { ui::SetSeam(nullptr); }
};

}  // namespace vxtest
