#include <windows.h>

#include "app/App.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int show) {
  return vx::RunVexillor(commandLine ? commandLine : "", show);
}
