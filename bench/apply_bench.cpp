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

#include "Bench.h"
#include "BenchLists.h"
#include "apply/Executor.h"
#include "apply/Journal.h"
#include "icons/IconApply.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "ui/ListBoxIcons.h"

namespace {

using bench::Median;
using bench::Millis;


}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  const bench::Args args = bench::ReadArgs(20);
  const int rounds = args.rounds;

  const vx::Environment env = vx::DetectEnvironment();
  bench::IconListsWindow lists;
  lists.Fill(env);
  vx::IconApplyOptions options;
  options.currentThemePath = "C:\\bench.vxtheme";

  // What a full Apply writes, and the notification calls that are timed apart.
  const vx::Plan full = vx::BuildIconApplyPlan(env, lists.catalogue, lists.lists, options);
  vx::Plan writes, notifications;
  for (const vx::Step& s : full) (vx::IsNotification(s) ? notifications : writes).push_back(s);

  // The first Apply records what was there, so the prefix is left as found; it also creates every
  // key, so that no round pays for creating keys the others do not.
  const vx::UndoRecord undo = vx::Execute(writes).undo;

  // The XP family: Apply reads what the system shows for every item and writes only what changed (here
  // one icon), so its cost is the reading.
  vx::Environment later = env;
  vx::SetNtVersion(later, 0x0A00, true);
  bench::IconListsWindow laterLists;
  laterLists.Fill(later);
  laterLists.lists[vx::kTabDesktop]->Change("My Computer", later.systemFolder + "\\shell32.dll,5", -1);
  const vx::UndoRecord laterUndo =
      vx::Execute(vx::BuildIconApplyPlan(later, laterLists.catalogue, laterLists.lists, options)).undo;
  vx::Run(laterUndo.plan);

  std::vector<double> plan, execute, journaled, bare, cursors, rebuild, perUser;
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string journalPath = std::string(temp) + "apply_bench.journal";
  for (int r = 0; r < rounds; ++r) {
    plan.push_back(Millis([&] {
      vx::Plan p = vx::BuildIconApplyPlan(env, lists.catalogue, lists.lists, options);
      p.erase(std::remove_if(p.begin(), p.end(), vx::IsNotification), p.end());
      vx::Run(p);
    }));
    bare.push_back(Millis([&] { bench::BareWrites(writes); }));
    perUser.push_back(Millis([&] {
      vx::Plan p = vx::BuildIconApplyPlan(later, laterLists.catalogue, laterLists.lists, options);
      p.erase(std::remove_if(p.begin(), p.end(), vx::IsNotification), p.end());
      vx::Run(p);
    }));
    vx::Run(laterUndo.plan);  // the next round finds the icon unchanged again
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
                "apply with journal / bare writes: %.2f\n"
                "per-user apply, one change / bare writes: %.2f\n",
                rounds, writes.size(), p, b, e, Median(cursors), Median(rebuild), bench::Ratio(p, b),
                bench::Ratio(e, b), bench::Ratio(Median(journaled), b), bench::Ratio(Median(perUser), b));
  bench::Report(text, args);
  return 0;
}
