#include "app/CommandLine.h"

#include <windows.h>
#include <shlobj.h>

#include <cstdio>

namespace vx {

CommandLine ParseCommandLine(const std::string& text) {
  if (text == "/q") return {true, ""};
  if (text.compare(0, 3, "/q ") == 0) return {true, text.substr(3)};
  return {false, text};
}

std::string DefaultLogPath() {
  char folder[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathA(nullptr, CSIDL_APPDATA | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, folder)))
    return "";
  return std::string(folder) + "\\Vexillor\\vexillor.log";
}

class QuietRun::Seam : public ui::Seam {
 public:
  explicit Seam(QuietRun& run) : run_(run) {}

  ui::PromptAnswer ShowPrompt(HWND, const ui::PromptRequest& r) override {
    int slot = 0;
    for (int i = 0; i < 3; ++i)
      if (r.buttons[static_cast<size_t>(i)] == "No") slot = i;
    run_.Log("prompt not shown, answered \"" + r.buttons[static_cast<size_t>(slot)] + "\": " + FirstLine(r.message));
    return {slot, false};
  }
  bool ChooseIcon(HWND, std::string&, int16_t&) override { return false; }
  std::optional<std::string> AskName(HWND, const std::string&, const std::string&, const std::string&) override {
    return std::nullopt;
  }
  int ShowMessage(HWND, const std::string& text, const std::string&, unsigned flags) override {
    run_.Log("message not shown: " + FirstLine(text));
    const unsigned buttons = flags & MB_TYPEMASK;
    return buttons == MB_YESNO || buttons == MB_YESNOCANCEL ? IDNO : buttons == MB_OKCANCEL ? IDCANCEL : IDOK;
  }
  bool ShowFileDialog(HWND, ui::FileDialog& d) override {
    run_.Log("file dialog not shown: " + d.title);
    return false;
  }
  void ShowReview(HWND, const std::string& heading, const std::vector<ui::ReviewRow>& rows) override {
    run_.Log(heading);
    for (const ui::ReviewRow& r : rows)
      run_.Log("would change " + r.where + (r.change.empty() ? "" : " (" + r.change + ")") + ": " + r.now + " -> " +
               r.after);
  }
  void ShowAbout(HWND, const ui::AboutRequest&) override {}
  void ShellOpen(HWND, const std::string& target) override { run_.Log("not opened: " + target); }
  void RunCommand(const std::string& command) override { run_.Log("not run: " + command); }
  void OpenHelp(HWND, const std::string&, unsigned, const std::string&) override {}
  void RestartWindows(bool) override { run_.Log("Windows not restarted"); }
  bool RunAsAdministrator(HWND, const std::string&, const std::string&) override {
    run_.Log("not started again as administrator");
    return false;
  }

 private:
  static std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }
  QuietRun& run_;
};

QuietRun::QuietRun(std::string logPath) : logPath_(std::move(logPath)), seam_(std::make_unique<Seam>(*this)) {}
QuietRun::~QuietRun() = default;

ui::Seam& QuietRun::seam() { return *seam_; }

void QuietRun::Log(const std::string& line) {
  if (logPath_.empty()) return;
  const size_t slash = logPath_.rfind('\\');
  if (slash != std::string::npos) CreateDirectoryA(logPath_.substr(0, slash).c_str(), nullptr);
  std::string text = line;
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 32) c = ' ';
  FILE* f = std::fopen(logPath_.c_str(), "ab");
  if (!f) return;
  SYSTEMTIME t;
  GetLocalTime(&t);
  std::fprintf(f, "%04u-%02u-%02u %02u:%02u:%02u %s\r\n", t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond,
               text.c_str());
  std::fclose(f);
}

}  // namespace vx
