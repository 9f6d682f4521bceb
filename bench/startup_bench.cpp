// Start-up benchmark: the time from starting a program to its window waiting idle for input (every
// icon list filled, for Vexillor), against two baselines measured in the same run, interleaved:
//   bare_window.exe  the smallest window program (no common controls, no shell);
//   fair_window.exe  what Vexillor cannot avoid: the common-controls-6 manifest, shell32, one window
//                    with the same controls, the same registry reads and icon counts, the visible icons.
// Then, in this process, where Vexillor's own start-up time goes (each phase timed alone).
// Usage: startup_bench.exe [ROUNDS] [RESULT_FILE]; the programs are ..\vexillor.exe, bare_window.exe and
// fair_window.exe beside this one.
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Bench.h"
#include "BenchLists.h"
#include "app/Main.h"
#include "apply/Journal.h"
#include "icons/Catalogue.h"
#include "system/Environment.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace {

using bench::Clock;
using bench::Median;
using bench::Millis;

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

// Milliseconds from CreateProcess until the program's window is up and its message loop idle.
double TimeStart(const std::string& exe) {
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string cmd = "\"" + exe + "\"";
  const auto t0 = Clock::now();
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return -1;
  WaitForInputIdle(pi.hProcess, 30000);
  FoundWindow f{pi.dwProcessId, nullptr};
  for (int waited = 0; !f.hwnd && waited < 30000; ++waited) {
    EnumWindows(FindTopWindow, reinterpret_cast<LPARAM>(&f));
    if (!f.hwnd) Sleep(1);
  }
  // Idle again once the window is there (the lists are filled before it shows).
  WaitForInputIdle(pi.hProcess, 30000);
  const auto t1 = Clock::now();
  if (f.hwnd) PostMessageA(f.hwnd, WM_CLOSE, 0, 0);
  if (WaitForSingleObject(pi.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 1);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return bench::Millis(t0, t1);
}

void Pump() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

// The icon tabs' lists on a hidden host, as the main window makes them.
struct Lists : bench::IconListsWindow {
  Lists() : IconListsWindow(380, 300) {}
  // Every row of every list drawn, as the lists did before rows waited to be seen.
  void DrawAll() {
    for (auto* l : lists)
      if (l)
        for (int r = 0; r < l->Count(); ++r) l->Pixel(0, r * ui::ListBoxIcons::kRowHeight + 25);
  }
};

// Main::Create timed window by window: a CBT hook notes the moment each window is about to be created,
// and the main window's placing and showing, so the time between two marks is the work the program did
// in between (its controls, menus, filling, reads). The marks of the last round are kept.
struct Mark {
  Clock::time_point at;
  std::string what;
};
std::vector<Mark> g_marks;

LRESULT CALLBACK NoteCreation(int code, WPARAM wp, LPARAM lp) {
  if (code == HCBT_CREATEWND) {
    auto* create = reinterpret_cast<CBT_CREATEWNDA*>(lp);
    char cls[64] = "?";
    if (!IS_INTRESOURCE(create->lpcs->lpszClass)) lstrcpynA(cls, create->lpcs->lpszClass, sizeof cls);
    else GetClassNameA(reinterpret_cast<HWND>(wp), cls, sizeof cls);
    g_marks.push_back({Clock::now(), cls});
  } else if ((code == HCBT_ACTIVATE || code == HCBT_MOVESIZE) && !GetParent(reinterpret_cast<HWND>(wp))) {
    // The main window placed (its saved position) and shown: the marks that split Form_Load.
    g_marks.push_back({Clock::now(), code == HCBT_ACTIVATE ? "(window shown)" : "(window placed)"});
  }
  return CallNextHookEx(nullptr, code, wp, lp);
}

// The longest stretches between window creations during Main::Create, longest first.
std::string Stretches(Clock::time_point start, Clock::time_point end, size_t shown) {
  struct Stretch {
    double ms;
    std::string from, to;
  };
  std::vector<Stretch> all;
  std::string from = "start", last;
  Clock::time_point t = start;
  for (const Mark& m : g_marks) {
    all.push_back({Millis(t, m.at), from, m.what});
    t = m.at;
    from = m.what;
  }
  all.push_back({Millis(t, end), from, "end of Create"});
  std::sort(all.begin(), all.end(), [](const Stretch& a, const Stretch& b) { return a.ms > b.ms; });
  std::string text;
  char line[200];
  for (size_t i = 0; i < all.size() && i < shown; ++i) {
    std::snprintf(line, sizeof line, "      %7.2f ms after creating %s, before %s\n", all[i].ms, all[i].from.c_str(),
                  all[i].to.c_str());
    text += line;
  }
  std::snprintf(line, sizeof line, "      (%zu windows created)\n", g_marks.size());
  return text + line;
}

}  // namespace

int main() {
  char self[MAX_PATH];
  GetModuleFileNameA(nullptr, self, MAX_PATH);
  std::string dir(self);
  dir = dir.substr(0, dir.rfind('\\') + 1);
  const std::string programs[3] = {dir + "bare_window.exe", dir + "fair_window.exe", dir + "..\\vexillor.exe"};
  const bench::Args args = bench::ReadArgs(9, 25);
  const int rounds = args.rounds;
  std::vector<double> times[3];
  for (const auto& p : programs) TimeStart(p);  // warm every one up once
  for (int i = 0; i < rounds; ++i)  // interleaved, the order turning each round, so all see the same machine
    for (int k = 0; k < 3; ++k) {
      const int which = (k + i) % 3;
      times[which].push_back(TimeStart(programs[which]));
    }
  const double bare = Median(times[0]), fair = Median(times[1]), vex = Median(times[2]);

  // Where Vexillor's start-up goes, phase by phase, in this process (medians of the same rounds).
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  std::vector<double> envT, readsT, listsT, fillT, selectT, allRowsT, createT, paintT, journalT;
  Clock::time_point createStart, createEnd;
  for (int i = 0; i < rounds; ++i) {
    vx::Environment env;
    envT.push_back(Millis([&] { env = vx::DetectEnvironment(); }));
    readsT.push_back(Millis([&] {
      for (const vx::IconItem& item : vx::BuildCatalogue(env)) vx::CurrentIcon(item, env);
    }));
    {
      std::unique_ptr<Lists> lists;
      listsT.push_back(Millis([&] { lists = std::make_unique<Lists>(); }));
      fillT.push_back(Millis([&] { vx::Add_Icons(env, lists->lists); }));
      selectT.push_back(Millis([&] {
        for (auto* l : lists->lists)
          if (l && l->Count() > 0) l->SelItemIndex(0);
      }));
      allRowsT.push_back(Millis([&] { lists->DrawAll(); }));
    }
    journalT.push_back(Millis([] { vx::JournalPath(); }));
    {
      vx::Main main;
      g_marks.clear();
      HHOOK hook = SetWindowsHookExA(WH_CBT, NoteCreation, nullptr, GetCurrentThreadId());
      createStart = Clock::now();
      createT.push_back(Millis([&] { main.Create(env, "", false); }));
      createEnd = Clock::now();
      UnhookWindowsHookEx(hook);
      paintT.push_back(Millis([&] {
        RedrawWindow(main.hwnd(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        Pump();
      }));
      main.Destroy();
      Pump();
    }
  }

  char text[4000];
  std::snprintf(
      text, sizeof text,
      "startup_bench: %d rounds, interleaved, medians, from CreateProcess to an idle window\n"
      "  vexillor.exe     %8.1f ms\n"
      "  fair_window.exe  %8.1f ms  (manifest, comctl32 6, shell32, same controls, reads, icon counts)\n"
      "  bare_window.exe  %8.1f ms\n"
      "  where vexillor's time goes, in process (medians):\n"
      "    environment detection                 %7.2f ms\n"
      "    catalogue reads and icon counts       %7.2f ms\n"
      "    eight icon lists created              %7.2f ms\n"
      "    Add_Icons (rows drawn when seen)      %7.2f ms\n"
      "    first row of each list selected       %7.2f ms\n"
      "    drawing every row, were it done now   %7.2f ms  (what waiting saves)\n"
      "    the journal's path (SHGetFolderPathA), looked up by the recovery check %7.2f ms\n"
      "    Main::Create (window, controls, Form_Load) %7.2f ms\n"
      "    first paint of the window             %7.2f ms\n"
      "    Main::Create's longest stretches between window creations (last round):\n%s"
      "start-up / fair baseline: %.2f\n"
      "start-up / bare window: %.2f\n",
      rounds, vex, fair, bare, Median(envT), Median(readsT), Median(listsT), Median(fillT), Median(selectT),
      Median(allRowsT), Median(journalT),
      Median(createT), Median(paintT), Stretches(createStart, createEnd, 8).c_str(), fair > 0 ? vex / fair : 0.0,
      bare > 0 ? vex / bare : 0.0);
  bench::Report(text, args);
  return 0;
}
