#include "app/App.h"

#include <windows.h>

namespace vx {
int RunVexillor(const std::string&, int) {
  MessageBoxA(nullptr, "Vexillor", "Vexillor", MB_OK);
  return 0;
}
}  // namespace vx
