// The program as the end-to-end tests run it: vexillor.exe's own code, plus one hook that only this
// build has. With VEXILLOR_TEST_PAUSE_STEP=N in its environment it creates the file named by
// VEXILLOR_TEST_PAUSE_FILE before step N of a run and waits there until it is killed, so a test can
// stop it in the middle of an Apply; with "rebuild" instead of N, in the middle of the icon cache rebuild.
#include <windows.h>

#include <optional>
#include <string>

#include "app/App.h"
#include "app/Usage.h"
#include "apply/Executor.h"
#include "registry/modCommon.h"

namespace {

void InstallTestPause() {
  char step[16] = {}, file[MAX_PATH] = {};
  if (!GetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", step, sizeof step) ||
      !GetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", file, sizeof file))
    return;
  const bool rebuild = std::string(step) == "rebuild";
  const auto at = rebuild ? std::optional<int32_t>(1) : ParseInt32(step);
  if (!at) return;
  vx::SetStepHook([rebuild, at = static_cast<size_t>(*at), file = std::string(file)](const vx::Step& s, size_t index) {
    if (index != at || rebuild != (s.label == "icon cache rebuild")) return;
    HANDLE h = CreateFileA(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
    for (;;) Sleep(1000);
  });
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int show) {
  const std::string line = commandLine ? commandLine : "";
  if (vx::AsksForUsage(line)) return vx::ShowUsage();
  InstallTestPause();
  return vx::RunVexillor(line, show);
}
