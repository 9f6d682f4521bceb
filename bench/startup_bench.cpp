// Start-up benchmark: the time from starting a program to its window waiting idle for input (every
// icon list filled, for Vexillor), against the bare window program measured in the same run.
// Usage: startup_bench.exe [ROUNDS] [RESULT_FILE]; the programs are ..\vexillor.exe and bare_window.exe
// beside this one.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

struct FoundWindow {
  DWORD pid;
  HWND hwnd;
};

BOOL CALLBACK FindTopWindow(HWND h, LPARAM lp) {
  auto* f = reinterpret_cast<FoundWindow*>(lp);
  DWORD pid = 0;
  GetWindowThreadProcessId(h, &pid);
  if (pid == f->pid && IsWindowVisible(h)) {
    f->hwnd = h;
    return FALSE;
  }
  return TRUE;
}

// Seconds from CreateProcess until the program's window is up and its message loop idle.
double TimeStart(const std::string& exe) {
  LARGE_INTEGER freq, t0, t1;
  QueryPerformanceFrequency(&freq);
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string cmd = "\"" + exe + "\"";
  QueryPerformanceCounter(&t0);
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return -1;
  WaitForInputIdle(pi.hProcess, 30000);
  FoundWindow f{pi.dwProcessId, nullptr};
  while (!f.hwnd) {
    EnumWindows(FindTopWindow, reinterpret_cast<LPARAM>(&f));
    if (!f.hwnd) Sleep(1);
  }
  // Idle again once the window is there (the lists are filled before it shows).
  WaitForInputIdle(pi.hProcess, 30000);
  QueryPerformanceCounter(&t1);
  PostMessageA(f.hwnd, WM_CLOSE, 0, 0);
  if (WaitForSingleObject(pi.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 1);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return static_cast<double>(t1.QuadPart - t0.QuadPart) / static_cast<double>(freq.QuadPart);
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  char self[MAX_PATH];
  GetModuleFileNameA(nullptr, self, MAX_PATH);
  std::string dir(self);
  dir = dir.substr(0, dir.rfind('\\') + 1);
  const std::string vexillor = dir + "..\\vexillor.exe", bare = dir + "bare_window.exe";
  const int rounds = std::min(argc > 1 ? std::max(1, std::atoi(argv[1])) : 7, 15);
  std::vector<double> program, baseline;
  TimeStart(bare);  // warm both up once
  TimeStart(vexillor);
  for (int i = 0; i < rounds; ++i) {  // interleaved, so both see the same machine
    baseline.push_back(TimeStart(bare));
    program.push_back(TimeStart(vexillor));
  }
  const double p = Median(program), b = Median(baseline);
  char line[200];
  std::snprintf(line, sizeof line, "startup to an idle window: vexillor %.1f ms, bare window %.1f ms (medians of %d), ratio %.2f\n",
                p * 1000, b * 1000, rounds, b > 0 ? p / b : 0.0);
  std::fputs(line, stdout);
  if (argc > 2)
    if (FILE* f = std::fopen(argv[2], "w")) {
      std::fputs(line, f);
      std::fclose(f);
    }
  return 0;
}
