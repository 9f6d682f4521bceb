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
  std::string rest;  // a theme path, "/a " or "/n " and a path, or "/undo"
};

// Takes a leading "/q " (or a lone "/q") off the text; anything else is left whole.
CommandLine ParseCommandLine(const std::string& text);

// Exit codes of a run started with "/a", "/n", "/undo" or "/q". When several causes meet, the highest code wins.
enum ExitCode : int {
  kExitOk = 0,
  kExitNoWindow = 1,        // the main window could not be created
  kExitThemeNotOpened = 2,  // no theme file given, not a theme, or unreadable: nothing was applied
  kExitNotApplied = 3,      // quiet without "/a": the theme was opened but nothing applied
  kExitEntryRefused = 4,    // a value naming a network or device location was refused; the rest applied
  kExitWriteFailed = 5,     // at least one write failed
  kExitNothingToUndo = 6,   // "/undo" found no Apply to take back
  kExitNoJournal = 7,       // the journal could not be written, so nothing was applied
  kExitJournalRefused = 8,  // a journal was damaged or not the program's own, or could not be put back in full
  kExitAlreadyRunning = 9,  // another Vexillor was still running after the wait
};

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
