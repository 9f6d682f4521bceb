// What opening the icon picker costs as files grow. The real "Change Icon" dialog is opened on a file of
// 1,000 icons, on shell32.dll (184 under Wine) and on a file of 32 (one screen, the baseline), in the
// same run, several rounds each, interleaved; each opening is timed from the call until the dialog's
// own message loop runs (it has counted, laid out and drawn what it shows), and then closed.
//
// Usage: picker_bench.exe [rounds] [output file]; results go to stdout and, when given, to the file:
//   picker 1000/32: <ratio>
//   picker 184/32: <ratio>
// The icon libraries are our own flags (bench/icons32.dll, bench/icons1000.dll), built beside this program.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "Bench.h"
#include "ui/frmChangeIcon.h"
#include "ui/win.h"

namespace {

using bench::Median;

// Closes the picker as soon as its modal loop handles a message: by then it has opened.
void CALLBACK CloseThePicker(HWND, UINT, UINT_PTR id, DWORD) {
  KillTimer(nullptr, id);
  HWND dialog = FindWindowA("#32770", "Change Icon");
  if (dialog) EndDialog(dialog, IDCANCEL);
}

double OpenMillis(const std::string& file) {
  ui::frmChangeIcon form;
  form.Filename = file;
  form.IconIndex = 0;
  SetTimer(nullptr, 0, 0, &CloseThePicker);
  const auto start = bench::Clock::now();
  form.ChooseIcon(nullptr);
  return bench::Millis(start, bench::Clock::now());
}

std::string Beside(const char* name) {
  const std::string self = ui::ModulePath();
  return self.substr(0, self.rfind('\\') + 1) + name;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  const bench::Args args = bench::ReadArgs(20);
  const int rounds = args.rounds;
  char dir[MAX_PATH];
  const std::string shell32 = std::string(dir, GetSystemDirectoryA(dir, MAX_PATH)) + "\\shell32.dll";
  const std::string files[] = {Beside("icons32.dll"), shell32, Beside("icons1000.dll")};
  std::vector<double> times[3];
  for (const std::string& f : files) OpenMillis(f);  // warm: files mapped, classes registered
  for (int r = 0; r < rounds; ++r)
    for (int i = 0; i < 3; ++i) times[i].push_back(OpenMillis(files[i]));
  const double base = Median(times[0]);
  char text[512];
  std::snprintf(text, sizeof text,
                "picker 32: %.2f ms (icons32.dll), 184: %.2f ms (shell32.dll), 1000: %.2f ms (icons1000.dll), "
                "median of %d\npicker 1000/32: %.2f\npicker 184/32: %.2f\n",
                base, Median(times[1]), Median(times[2]), rounds, Median(times[2]) / base, Median(times[1]) / base);
  bench::Report(text, args);
  return 0;
}
