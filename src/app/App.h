#pragma once
#include <string>

namespace vx {
// Creates the main window, runs the message loop and returns the exit code.
int RunVexillor(const std::string& commandLine, int show);
}
