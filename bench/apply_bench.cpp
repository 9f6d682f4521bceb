// How much the plan costs over the bare registry writes it makes. One full icon Apply (plan built from
// the icon lists filled by Add_Icons, then executed) is timed against a bare loop that makes the same
// writes with RegOpenKeyExA/RegCreateKeyA + RegSetValueExA + RegCloseKey, in the same run, several
// rounds each, interleaved. The fifteen SPI_SETCURSORS calls and the icon-cache rebuild (two writes and
// two broadcasts) are not registry writes: they are left out of the comparison and timed on their own.
//
// Usage: apply_bench.exe [rounds] [output file]; results go to stdout and, when given, to the file.
// Run it in a throwaway Wine prefix (scripts/bench.sh): it writes the shell's icon keys for real, and
// puts back what it found at the end through the plan's undo record.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "apply/Executor.h"
#include "apply/Journal.h"
#include "icons/IconApply.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "ui/ListBoxIcons.h"

namespace {

using Clock = std::chrono::steady_clock;

// The main window's icon lists, filled by Add_Icons as at start-up.
struct Lists {
  explicit Lists(const vx::Environment& env) {
    parent = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 400, 600, nullptr, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
    for (int t : {2, 3, 4, 5, 6, 7, 9}) {
      owned[t] = std::make_unique<ui::ListBoxIcons>();
      owned[t]->Create(parent, 100 + t, 0, 0, 300, 500);
      lists[t] = owned[t].get();
    }
    catalogue = vx::Add_Icons(env, lists);
  }
  ~Lists() {
    for (auto& l : owned) l.reset();
    DestroyWindow(parent);
  }
  HWND parent = nullptr;
  std::array<std::unique_ptr<ui::ListBoxIcons>, 10> owned;
  vx::IconLists lists{};
  std::vector<vx::IconItem> catalogue;
};

// The same writes with nothing but the registry API: open (or create) the key, set, close.
void BareLoop(const vx::Plan& writes) {
  for (const vx::Step& s : writes) {
    std::string sub = s.key;
    HKEY root = modRegistry::SplitKeyPath(sub);
    HKEY key = nullptr;
    if (RegOpenKeyExA(root, sub.c_str(), 0, KEY_WRITE, &key) != ERROR_SUCCESS &&
        RegCreateKeyA(root, sub.c_str(), &key) != ERROR_SUCCESS)
      continue;
    RegSetValueExA(key, s.value.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(s.text.data()),
                   static_cast<DWORD>(s.text.size()));
    RegCloseKey(key);
  }
}

template <typename F>
double Millis(F&& f) {
  const auto start = Clock::now();
  f();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v.empty() ? 0 : v[v.size() / 2];
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR cmdLine, int) {
  int rounds = 20;
  std::string outFile;
  {
    std::string args = cmdLine ? cmdLine : "";
    const auto blank = args.find(' ');
    if (!args.empty()) rounds = std::max(1, std::atoi(args.substr(0, blank).c_str()));
    if (blank != std::string::npos) outFile = args.substr(blank + 1);
  }

  const vx::Environment env = vx::DetectEnvironment();
  const Lists lists(env);
  vx::IconApplyOptions options;
  options.currentThemePath = "C:\\bench.vxtheme";

  // What a full Apply writes, and the notification calls that are timed apart.
  const vx::Plan full = vx::BuildIconApplyPlan(env, lists.catalogue, lists.lists, options);
  vx::Plan writes, notifications;
  for (const vx::Step& s : full) (vx::IsNotification(s) ? notifications : writes).push_back(s);

  // The first Apply records what was there, so the prefix is left as found; it also creates every
  // key, so that no round pays for creating keys the others do not.
  const vx::UndoRecord undo = vx::Execute(writes).undo;

  std::vector<double> plan, execute, journaled, bare, cursors, rebuild;
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string journalPath = std::string(temp) + "apply_bench.journal";
  for (int r = 0; r < rounds; ++r) {
    plan.push_back(Millis([&] {
      vx::Plan p = vx::BuildIconApplyPlan(env, lists.catalogue, lists.lists, options);
      p.erase(std::remove_if(p.begin(), p.end(), vx::IsNotification), p.end());
      vx::Run(p);
    }));
    bare.push_back(Millis([&] { BareLoop(writes); }));
    execute.push_back(Millis([&] { vx::Execute(writes); }));
    journaled.push_back(Millis([&] {
      vx::Journal journal(journalPath, vx::Journal::kApply);
      vx::Execute(writes, &journal);
      journal.Complete();
    }));
    cursors.push_back(Millis([&] { vx::Run(notifications); }));
    rebuild.push_back(Millis(
        [&] { vx::Run(vx::BuildRebuildPlan(modRegistry::GetString(vx::kWindowMetricsKey, "Shell Icon Size"))); }));
  }
  vx::Run(undo.plan);

  const double p = Median(plan), b = Median(bare), e = Median(execute);
  char text[1024];
  std::snprintf(text, sizeof text,
                "apply_bench: %d rounds, %zu registry writes per Apply (median per round)\n"
                "  icon Apply (build plan + run writes)    %8.2f ms\n"
                "  bare RegSetValueExA loop, same writes   %8.2f ms\n"
                "  Execute with undo record (writes only)  %8.2f ms\n"
                "  apart: 15 SPI_SETCURSORS calls          %8.2f ms\n"
                "  apart: icon-cache rebuild (2 writes, 2 broadcasts) %8.2f ms\n"
                "icon apply / bare writes: %.2f\n"
                "apply with undo record / bare writes: %.2f\n"
                "apply with journal / bare writes: %.2f\n",
                rounds, writes.size(), p, b, e, Median(cursors), Median(rebuild), b > 0 ? p / b : 0.0,
                b > 0 ? e / b : 0.0, b > 0 ? Median(journaled) / b : 0.0);
  std::fputs(text, stdout);
  std::fflush(stdout);
  if (!outFile.empty())
    if (FILE* f = std::fopen(outFile.c_str(), "w")) {
      std::fputs(text, f);
      std::fclose(f);
    }
  return 0;
}
