#pragma once
// The one narrow seam: everything that waits for a person or leaves the process goes through Seam.
// The real implementation shows the real dialogs and starts the real programs; tests install a
// scripted one that gives answers and records what was asked (tests/support/ScriptedSeam.h).
#include <windows.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ui {

// System icon numbers of a prompt.
inline constexpr const char* kIconStop = "32513";
inline constexpr const char* kIconQuestion = "32514";
inline constexpr const char* kIconExclamation = "32515";
inline constexpr const char* kIconInformation = "32516";

struct PromptRequest {
  std::string message;                 // paragraphs separated by two line feeds
  std::array<std::string, 3> buttons;  // slot 0 is the rightmost button; an empty caption is no button
  std::string icon = kIconInformation; // decimal text of a system icon number
  int helpTopic = 0;                   // context-help topic, 0 for none
  std::string checkBox;                // caption of the "do not show again" box; empty for none
};

struct PromptAnswer {
  int result = 0;          // slot of the pressed button
  bool doNotShow = false;  // the check box was ticked
};

// One line of Review Changes.
struct ReviewRow {
  std::string change, where, now, after;
  bool operator==(const ReviewRow&) const = default;
};

struct FileDialog {
  std::string title;
  std::string filter;       // "Name\0pattern\0Name\0pattern\0" pairs, as the common dialogs take them
  std::string initialFile;  // also the result
  std::string defaultExt;
  bool save = false;
  bool overwritePrompt = false;
};

// What the about box shows besides what the program file itself says (its icon and version).
struct AboutRequest {
  std::string homePage;  // the maker's web address, as the Web sub-menu opens it
  std::string mail;      // the author's address, a "mailto:" address as the Web sub-menu opens it
};

class Seam {
 public:
  virtual ~Seam() = default;
  // The modal prompt dialog.
  virtual PromptAnswer ShowPrompt(HWND owner, const PromptRequest& request) = 0;
  // The icon picker: in file and index, out the choice; false when the person cancelled.
  virtual bool ChooseIcon(HWND owner, std::string& file, int16_t& index) = 0;
  // The rename box: label and starting text in; the accepted (non-empty) name out, or nothing when
  // cancelled. An empty name is refused in the box itself, which then shows emptyReset again.
  virtual std::optional<std::string> AskName(HWND owner, const std::string& label, const std::string& text,
                                             const std::string& emptyReset) = 0;
  // The about box (frmAbout), modal until OK, Enter or Escape.
  virtual void ShowAbout(HWND owner, const AboutRequest& about) = 0;
  // A plain system message box (MessageBoxA flags); returns the pressed button's id.
  virtual int ShowMessage(HWND owner, const std::string& text, const std::string& title, unsigned flags) = 0;
  // Review Changes: what Apply would write, shown until the person closes it.
  virtual void ShowReview(HWND owner, const std::string& heading, const std::vector<ReviewRow>& rows) = 0;
  // Open and save dialogs; the chosen path comes back in dialog.initialFile.
  virtual bool ShowFileDialog(HWND owner, FileDialog& dialog) = 0;
  // Leaving the process: a document, address or program given to the shell's "Open" verb...
  virtual void ShellOpen(HWND owner, const std::string& target) = 0;
  // ...a command line started as a program...
  virtual void RunCommand(const std::string& commandLine) = 0;
  // ...the help file opened at a keyword (HELP_PARTIALKEY) or a context topic (HELP_CONTEXT, the
  // topic number in decimal text as the keyword)...
  virtual void OpenHelp(HWND owner, const std::string& helpFile, unsigned command,
                        const std::string& keyword) = 0;
  // ...restarting Windows...
  virtual void RestartWindows(bool enableShutdownPrivilege) = 0;
  // ...and starting a program again with administrator rights ("runas"); false when it did not start
  // (refused, cancelled).
  virtual bool RunAsAdministrator(HWND owner, const std::string& exe, const std::string& parameters) = 0;
};

// The seam in force: the real one unless a test installed its own.
Seam& GetSeam();
// nullptr puts the real seam back.
void SetSeam(Seam* seam);

// Asks for the right to shut the system down (NT); failures are ignored.
void EnableShutdownPrivilege();

// The real seam, for tests that want the real dialogs but recorded side effects.
class RealSeam : public Seam {
 public:
  PromptAnswer ShowPrompt(HWND owner, const PromptRequest& request) override;
  bool ChooseIcon(HWND owner, std::string& file, int16_t& index) override;
  std::optional<std::string> AskName(HWND owner, const std::string& label, const std::string& text,
                                     const std::string& emptyReset) override;
  void ShowAbout(HWND owner, const AboutRequest& about) override;
  int ShowMessage(HWND owner, const std::string& text, const std::string& title, unsigned flags) override;
  bool ShowFileDialog(HWND owner, FileDialog& dialog) override;
  void ShowReview(HWND owner, const std::string& heading, const std::vector<ReviewRow>& rows) override;
  void ShellOpen(HWND owner, const std::string& target) override;
  void RunCommand(const std::string& commandLine) override;
  void OpenHelp(HWND owner, const std::string& helpFile, unsigned command,
                const std::string& keyword) override;
  void RestartWindows(bool enableShutdownPrivilege) override;
  bool RunAsAdministrator(HWND owner, const std::string& exe, const std::string& parameters) override;
};

}  // namespace ui
