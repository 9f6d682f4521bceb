#include <windows.h>

#include "app/App.h"
#include "app/Usage.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int show) {
  const std::string line = commandLine ? commandLine : "";
  if (vx::AsksForUsage(line)) return vx::ShowUsage();
  return vx::RunVexillor(line, show);
}
