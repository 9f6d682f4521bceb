#pragma once
// The command line: the quiet switch "/q" that fleet tools and logon scripts put in front of the rest,
// and what a quiet run does instead of asking (it answers as nobody is there, logs what it wrote and
// refused, and ends with an exit code per cause).
#include <memory>
#include <string>
#include <vector>

#include "ui/seam.h"

namespace vx {

struct CommandLine {
  bool quiet = false;
  std::string rest;  // handled as the command line always was: a theme path, or "/a " and a path
};

// Takes a leading "/q " (or a lone "/q") off the text; anything else is left whole.
CommandLine ParseCommandLine(const std::string& text);

// Exit codes of a run started with "/a" or "/q". When several causes meet, the highest code wins.
enum ExitCode : int {
  kExitOk = 0,
  kExitNoWindow = 1,        // the main window could not be created
  kExitThemeNotOpened = 2,  // no theme file given, not a theme, or unreadable: nothing was applied
  kExitNotApplied = 3,      // quiet without "/a": the theme was opened but nothing applied
  kExitEntryRefused = 4,    // a value naming a network or device location was refused; the rest applied
  kExitWriteFailed = 5,     // at least one write failed
};

// The lines of the "/?" usage text that describe the theme switches, the quiet switch and its exit codes.
inline constexpr const char* kThemeSwitchesUsage =
    "vexillor.exe [/q] [/a] [theme]\n"
    "  theme  Opens an icon theme (.vxtheme), or imports a Microsoft Plus! (.theme) or Microangelo\n"
    "         (.motif) theme; its icons and pointers are pending until you press Apply.\n"
    "  /a     Applies the theme at once and ends (a lower-case a, then one blank, then the theme).\n"
    "  /q     Quiet: must come first (vexillor.exe /q /a C:\\Themes\\Blue.vxtheme). No window and no\n"
    "         question is shown (the restart offer is answered No); every write and every refused\n"
    "         entry is logged in Vexillor\\vexillor.log in your application-data folder.\n"
    "Exit codes of /a and /q: 0 applied; 1 the window could not be created; 2 the theme could not be\n"
    "opened; 3 /q without /a (nothing applied); 4 an entry naming a network or device location was\n"
    "refused (the rest applied); 5 a write failed.\n";

// Where a quiet run appends its lines: "Vexillor\vexillor.log" in the user's application-data folder.
std::string DefaultLogPath();

// A quiet run's record: the log and the seam that answers in the user's stead.
class QuietRun {
 public:
  explicit QuietRun(std::string logPath);
  ~QuietRun();
  QuietRun(const QuietRun&) = delete;
  QuietRun& operator=(const QuietRun&) = delete;

  // Appends one line (with the time) to the log; creates the folder when needed. Line breaks and
  // other control characters in the text become blanks, so each entry stays one line.
  void Log(const std::string& line);
  const std::string& logPath() const { return logPath_; }

  // Prompts get the answer "No" where they offer it (restart now, save before closing), else their
  // rightmost button without the "do not show again" tick; file dialogs, pickers and name boxes are
  // cancelled; nothing is opened or run; Windows is not restarted. Each answer is logged.
  ui::Seam& seam();

 private:
  class Seam;
  std::string logPath_;
  std::unique_ptr<Seam> seam_;
};

}  // namespace vx
