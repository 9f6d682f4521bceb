#include "app/Usage.h"

#include <algorithm>

#include "app/CommandLine.h"
#include "ui/frmAbout.h"
#include "ui/seam.h"

namespace vx {

const std::vector<UsageLine>& UsageLines() {
  // Short enough that a message box shows each switch on one line.
  static const std::vector<UsageLine> lines = {
      {"THEME", "opens a theme, its icons pending"},
      {"/a THEME", "applies a theme and ends"},
      {"/n THEME", "lists what /a would change"},
      {"/undo", "takes the last Apply back"},
      {"/q", "quiet: no prompts; exit code and log"},
      {"/?", "shows this text"},
  };
  return lines;
}

const std::vector<ExitCodeLine>& ExitCodeLines() {
  static const std::vector<ExitCodeLine> lines = {
      {kExitOk, "done"},
      {kExitNoWindow, "the window could not be made"},
      {kExitThemeNotOpened, "usage error, or theme not opened"},
      {kExitNotApplied, "/q without /a: opened, not applied"},
      {kExitEntryRefused, "entries refused (/n: would be)"},
      {kExitWriteFailed, "a write failed"},
      {kExitNothingToUndo, "/undo: nothing to take back"},
      {kExitNoJournal, "no journal could be written"},
      {kExitJournalRefused, "journal refused or not put back"},
      {kExitAlreadyRunning, "another Vexillor still running"},
      {kExitNothingLoaded, "nothing in the theme could be used"},
  };
  return lines;
}

std::string UsageText() {
  const std::string version = ui::ModuleVersion();
  std::string text = "Vexillor" + (version.empty() ? std::string() : " " + version) +
                     " command line\r\n\r\n"
                     "vexillor [/q] [/a | /n] [THEME]\r\n"
                     "vexillor [/q] /undo\r\n\r\n";
  size_t width = 0;
  for (const auto& l : UsageLines()) width = std::max(width, std::string(l.syntax).size());
  for (const auto& l : UsageLines()) {
    std::string syntax = l.syntax;
    text += "  " + syntax + std::string(width + 2 - syntax.size(), ' ') + l.meaning + "\r\n";
  }
  text += "\r\nSwitches take / or -, in any case, before THEME.\r\n"
          "THEME without a folder is in the current one.\r\n"
          "/q writes its log to\r\n"
          "  %APPDATA%\\Vexillor\\vexillor.log\r\n"
          "\r\nA quiet run first puts back an Apply cut off,\r\n"
          "and waits for another Vexillor to finish.\r\n"
          "\r\nExit codes (the highest cause wins):\r\n";
  for (const auto& e : ExitCodeLines())
    text += "  " + std::to_string(e.code) + std::string(e.code < 10 ? 3 : 2, ' ') + e.meaning + "\r\n";
  text += "\r\nExample:\r\n"
          "  vexillor /q /a \"C:\\Themes\\Blue Steel.vxtheme\"\r\n";
  return text;
}

bool AsksForUsage(const std::string& commandLine) {
  size_t i = 0;
  auto next = [&]() {
    while (i < commandLine.size() && (commandLine[i] == ' ' || commandLine[i] == '\t')) ++i;
    size_t start = i;
    while (i < commandLine.size() && commandLine[i] != ' ' && commandLine[i] != '\t') ++i;
    return commandLine.substr(start, i - start);
  };
  std::string first = next();
  if (first == "/q" || first == "/Q" || first == "-q" || first == "-Q") first = next();
  return first == "/?" || first == "-?";
}

bool WriteUsage(HANDLE out) {
  if (!out || out == INVALID_HANDLE_VALUE) return false;
  const std::string text = UsageText();
  DWORD written = 0;
  return WriteFile(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && written == text.size();
}

int ShowUsage(bool consoleFirst) {
  if (consoleFirst) {
    // Redirected output (vexillor /? > file) is there already; a window program has no console of
    // its own, so borrow the one of the command prompt that started it. AttachConsole is looked up
    // because Windows before XP has none.
    HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    if (out && out != INVALID_HANDLE_VALUE && GetFileType(out) != FILE_TYPE_UNKNOWN && WriteUsage(out)) return 0;
    using AttachFn = BOOL(WINAPI*)(DWORD);
    auto attach = reinterpret_cast<AttachFn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "AttachConsole")));
    if (attach && attach(static_cast<DWORD>(-1) /* ATTACH_PARENT_PROCESS */)) {
      HANDLE console = CreateFileA("CONOUT$", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                   OPEN_EXISTING, 0, nullptr);
      bool done = false;
      if (console != INVALID_HANDLE_VALUE) {
        // The prompt has already come back (it does not wait for a window program): start on a fresh line.
        DWORD written = 0;
        WriteFile(console, "\r\n", 2, &written, nullptr);
        done = WriteUsage(console);
        CloseHandle(console);
      }
      FreeConsole();
      if (done) return 0;
    }
  }
  ui::GetSeam().ShowMessage(nullptr, UsageText(), "Vexillor", MB_OK | MB_ICONINFORMATION);
  return 0;
}

void ShowUsageError(const std::string& reason) {
  ui::GetSeam().ShowMessage(nullptr, "Vexillor did nothing: " + reason + ".\r\n\r\n" + UsageText(), "Vexillor",
                            MB_OK | MB_ICONEXCLAMATION);
}

}  // namespace vx
