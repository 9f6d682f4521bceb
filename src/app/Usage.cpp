#include "app/Usage.h"

#include <algorithm>

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
  text += "\r\n/q goes first. Its log:\r\n"
          "  %APPDATA%\\Vexillor\\vexillor.log\r\n"
          "\r\nA quiet run first puts back an Apply cut off,\r\n"
          "and waits for another Vexillor to finish.\r\n"
          "Exit codes: 0 done, 1 no window, 2 no theme,\r\n"
          "  3 not applied, 4 entry refused, 5 write failed,\r\n"
          "  6 nothing to undo, 7 no journal possible,\r\n"
          "  8 journal refused or not put back,\r\n"
          "  9 another Vexillor still running\r\n"
          "\r\nExample:\r\n"
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

}  // namespace vx
