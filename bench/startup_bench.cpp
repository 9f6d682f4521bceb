// Start-up benchmark: the time from starting a program to its window waiting idle for input (every
// icon list filled, for Vexillor), against the bare window program measured in the same run.
// Usage: startup_bench.exe VEXILLOR_EXE BARE_EXE [ROUNDS]
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
  if (argc < 3) {
    std::fprintf(stderr, "usage: startup_bench VEXILLOR_EXE BARE_EXE [ROUNDS]\n");
    return 2;
  }
  const int rounds = argc > 3 ? std::max(1, std::atoi(argv[3])) : 7;
  std::vector<double> program, bare;
  TimeStart(argv[2]);  // warm both up once
  TimeStart(argv[1]);
  for (int i = 0; i < rounds; ++i) {  // interleaved, so both see the same machine
    bare.push_back(TimeStart(argv[2]));
    program.push_back(TimeStart(argv[1]));
  }
  const double p = Median(program), b = Median(bare);
  std::printf("startup: vexillor %.1f ms, bare window %.1f ms (medians of %d), ratio %.2f\n", p * 1000, b * 1000,
              rounds, b > 0 ? p / b : 0.0);
  return 0;
}
