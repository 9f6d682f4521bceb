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
  enum Action { Open, Apply, Review, Undo };
  bool quiet = false;    // "/q"
  bool usage = false;    // "/?"
  Action action = Open;  // a theme alone opens it; "/a" applies it, "/n" lists what Apply would change
  std::string theme;     // the rest of the text: blanks around it and the quotes of a path with blanks off
  std::string error;     // why the switches make no sense together; empty when they do
};

// Switches come first, in any order and any case, each with "/" or "-" ("/Q -a" is "/q /a"); the
// first word that is no switch starts the theme path, which runs to the end of the text. A word with
// "/" that is no switch of ours is a usage error; one with "-" is taken for a file name.
CommandLine ParseCommandLine(const std::string& text);

// The theme path as the program uses it: a relative one (a bare file name) made full against the
// current folder, as the person who typed it meant.
std::string FullThemePath(const std::string& path);

// Exit codes of a run started with "/a", "/n", "/undo" or "/q". When several causes meet, the highest code wins.
enum ExitCode : int {
  kExitOk = 0,
  kExitNoWindow = 1,        // the main window could not be created
  kExitThemeNotOpened = 2,  // a usage error, no theme given, not a theme, unreadable or on the network:
                            // nothing was applied
  kExitNotApplied = 3,      // quiet without "/a": the theme was opened but nothing applied
  kExitEntryRefused = 4,    // a value naming a network or device location was refused; the rest applied
                            // (with "/n": would be refused)
  kExitWriteFailed = 5,     // at least one write failed
  kExitNothingToUndo = 6,   // "/undo" found no Apply to take back
  kExitNoJournal = 7,       // the journal could not be written, so nothing was applied
  kExitJournalRefused = 8,  // a journal was damaged or not the program's own, or could not be put back in full
  kExitAlreadyRunning = 9,  // another Vexillor was still running after the wait
  kExitNothingLoaded = 10,  // the theme held nothing that could be loaded: nothing was applied
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
