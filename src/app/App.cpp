#include "app/App.h"

#include "app/Main.h"

namespace vx {
int RunVexillor(const std::string& commandLine, int show) { return RunMain(commandLine, show); }
}  // namespace vx
