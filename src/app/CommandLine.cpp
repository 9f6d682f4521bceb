#include "app/CommandLine.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <cstdio>

#include "registry/LaterApi.h"
#include "registry/modCommon.h"

namespace vx {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

CommandLine ParseCommandLine(const std::string& text) {
  CommandLine line;
  int actions = 0;
  size_t i = 0;
  for (;;) {
    while (i < text.size() && IsBlank(text[i])) ++i;
    size_t end = i;
    while (end < text.size() && !IsBlank(text[end])) ++end;
    const std::string word = text.substr(i, end - i);
    if (word.size() < 2 || (word[0] != '/' && word[0] != '-')) break;
    const std::string name = LowerAscii(word.substr(1));
    if (name == "q") line.quiet = true;
    else if (name == "?") line.usage = true;
    else if (name == "a") line.action = CommandLine::Apply, ++actions;
    else if (name == "n") line.action = CommandLine::Review, ++actions;
    else if (name == "undo") line.action = CommandLine::Undo, ++actions;
    else if (word[0] == '-') break;  // a file whose name begins with a hyphen
    else {
      line.error = "unknown switch " + word;
      return line;
    }
    i = end;
  }
  std::string theme = TrimSpaces(text.substr(std::min(i, text.size())));
  if (theme.size() >= 2 && theme.front() == '"' && theme.back() == '"') theme = theme.substr(1, theme.size() - 2);
  line.theme = theme;
  if (actions > 1) line.error = "/a, /n and /undo do not go together";
  else if (line.action == CommandLine::Undo && !theme.empty()) line.error = "/undo takes no theme";
  else if (line.action == CommandLine::Review && theme.empty()) line.error = "/n needs a theme";
  return line;
}

std::string FullThemePath(const std::string& path) {
  if (path.empty()) return path;
  char full[MAX_PATH * 2] = {};
  char* name = nullptr;
  const DWORD n = GetFullPathNameA(path.c_str(), sizeof full, full, &name);
  return n > 0 && n < sizeof full ? std::string(full, n) : path;
}

std::string DefaultLogPath() {
  const std::string folder = later::AppDataFolder(true);
  if (folder.empty()) return "";
  return folder + "\\Vexillor\\vexillor.log";
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
