#include "app/App.h"

#include <windows.h>

namespace vx {
int RunVexillor(const std::string&, int) { return 0; }
}  // namespace vx
