#pragma once
// The usage text that "/?" shows: every switch on a line of its own and an example, in a message box,
// or on the console when the program was started from one.
#include <windows.h>

#include <string>
#include <vector>

namespace vx {

struct UsageLine {
  const char* syntax;   // as typed, with the parts the user fills in in capitals
  const char* meaning;  // one line
};

// The switches, in the order they are shown.
const std::vector<UsageLine>& UsageLines();

struct ExitCodeLine {
  int code;
  const char* meaning;  // one short line
};
// The exit codes of a command-line run, in order.
const std::vector<ExitCodeLine>& ExitCodeLines();

// The whole text: the program and its version (from the version resource), a synopsis, one line per
// switch and an example. Lines end in "\r\n".
std::string UsageText();

// True when the command line asks for the usage: "/?" or "-?" as its first argument, or after "/q".
bool AsksForUsage(const std::string& commandLine);

// Writes the text to a console or file handle; false when nothing could be written.
bool WriteUsage(HANDLE out);

// Shows the text: on the standard output when it goes somewhere (a file, a pipe), else on the
// console of the parent process when there is one, else in a message box through the seam. With
// consoleFirst false it goes straight to the message box. Returns the exit code for "/?": 0.
int ShowUsage(bool consoleFirst = true);

// A command line whose switches make no sense: the reason, then the usage text, in a message box.
void ShowUsageError(const std::string& reason);

}  // namespace vx
