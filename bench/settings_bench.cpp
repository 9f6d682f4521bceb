// What the Shell tab costs over the bare registry work it does, in the same run, several rounds each,
// interleaved:
//  - filling the tree (the settings read from the registry by their rules, and the nodes added to a real
//    tree control) against a bare loop that makes the same reads with RegOpenKeyExA + RegQueryValueExA +
//    RegCloseKey (and GetFileAttributesA for the cascading-menu folders);
//  - a full Apply with the settings stage (the plan of both stages built from the tree and the icon
//    lists, then carried out by the executor with its undo record, as the program does) against a bare
//    loop that makes the same writes and deletions with the registry API.
// The SystemParametersInfoA calls are not registry writes: they are left out of the comparison and timed
// on their own.
//
// Usage: settings_bench.exe [rounds] [output file]. Run it in a throwaway Wine prefix (scripts/bench.sh):
// it writes the settings for real, and puts back what it found through the plan's undo record.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Bench.h"
#include "BenchLists.h"
#include "app/ApplyRun.h"
#include "apply/Executor.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "settings/SettingsTree.h"
#include "system/Keys.h"
#include "ui/ListBoxIcons.h"

namespace {

using bench::Median;
using bench::Millis;

HKEY Open(const std::string& path, REGSAM access) {
  std::string sub = path;
  HKEY root = modRegistry::SplitKeyPath(sub);
  HKEY key = nullptr;
  if (RegOpenKeyExA(root, sub.c_str(), 0, access, &key) != ERROR_SUCCESS) return nullptr;
  return key;
}

// One read the fill makes: a value of a key, or a folder's attributes.
struct Read {
  std::string key, value;
  bool folder = false;
};

// The reads of a fill, from the same table: every setting of the tree, the Plus! and Start Menu
// values, and the recorded selection.
std::vector<Read> FillReads(const vx::Environment& env, const std::string& startMenu) {
  std::vector<Read> reads = {{vx::kPlusSetupKey, "COOL.DLL"}, {vx::kShellFoldersKey, "Start Menu"}};
  for (const vx::SettingRow& r : vx::SettingsTable()) {
    if (r.needs == vx::Needs::DesktopUpdate && !env.desktopUpdate) continue;
    if (r.read == vx::ReadAs::Folder)
      reads.push_back({startMenu + r.key, "", true});
    else if (r.read != vx::ReadAs::None)
      reads.push_back({r.keyPath, r.value});
  }
  reads.push_back({vx::kSettingsKey, "Selected"});
  return reads;
}

void BareReads(const std::vector<Read>& reads) {
  for (const Read& r : reads) {
    if (r.folder) {
      GetFileAttributesA(r.key.c_str());
      continue;
    }
    HKEY key = Open(r.key, KEY_READ);
    if (!key) continue;
    char data[256];
    DWORD type = 0, size = sizeof data;
    RegQueryValueExA(key, r.value.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
    RegCloseKey(key);
  }
}



}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  const bench::Args args = bench::ReadArgs(20);
  const int rounds = args.rounds;
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  // A byte write to a missing policies key reports "Error" in a message box: not here.
  modRegistry::SetErrorReporter([](const std::string&) {});
  const bool hadPolicies = modRegistry::KeyExists(vx::kPoliciesKey);
  modRegistry::CreateKey(vx::kPoliciesKey);

  const vx::Environment env = vx::DetectEnvironment();
  const vx::ScreenInfo screen = vx::CurrentScreen();
  HWND host = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 500, 400, nullptr, nullptr, nullptr, nullptr);
  const std::vector<Read> reads = FillReads(env, vx::StartMenuFolder());

  // Filling: a new tree each round, as the program fills it once per run.
  std::vector<double> fill, model, bareReads;
  for (int r = 0; r < rounds; ++r) {
    vx::RunFlags flags;
    vx::SettingsTree tree({host, &env, &flags, [] {}, [] {}});
    tree.Create(host, 1, nullptr);
    fill.push_back(Millis([&] { tree.Fill(screen); }));
    model.push_back(Millis([&] { vx::ReadSettings(env, screen); }));
    bareReads.push_back(Millis([&] { BareReads(reads); }));
  }

  // Applying: the tree as read, the icon lists as filled; every stage of Apply that writes.
  vx::RunFlags flags;
  vx::SettingsTree tree({host, &env, &flags, [] {}, [] {}});
  tree.Create(host, 1, nullptr);
  tree.Fill(screen);
  bench::IconListsWindow lists;
  lists.Fill(env);
  const vx::ListBoxValues values(lists.lists);
  vx::ApplyInput input{env,
                       lists.catalogue,
                       values,
                       "C:\\bench.vxtheme",
                       [&] { return vx::BuildSettingsPlan(tree.model(), env, 1); },
                       [&] { return vx::BitmapThumbnailState(tree.model()); },
                       {}};
  auto writesOf = [&] {
    vx::Plan p = vx::BuildApplyPlan(input, flags);
    p.erase(std::remove_if(p.begin(), p.end(), vx::IsNotification), p.end());
    return p;
  };
  const vx::Plan writes = writesOf();
  vx::Plan notifications;
  for (const vx::Step& s : vx::BuildApplyPlan(input, flags))
    if (vx::IsNotification(s)) notifications.push_back(s);
  // The first run records what was there, so the prefix is left as found.
  const vx::UndoRecord undo = vx::Execute(vx::BuildApplyPlan(input, flags)).undo;

  std::vector<double> apply, run, bareWrites, parameters;
  for (int r = 0; r < rounds; ++r) {
    apply.push_back(Millis([&] { vx::Execute(writesOf()); }));
    bareWrites.push_back(Millis([&] { bench::BareWrites(writes); }));
    run.push_back(Millis([&] { vx::Run(writesOf()); }));
    parameters.push_back(Millis([&] { vx::Run(notifications); }));
  }
  vx::Run(undo.plan);
  if (!hadPolicies) modRegistry::DeleteTree(vx::kPoliciesKey);
  DestroyWindow(host);

  const double f = Median(fill), m = Median(model), br = Median(bareReads);
  const double a = Median(apply), rr = Median(run), bw = Median(bareWrites);
  char text[1400];
  std::snprintf(text, sizeof text,
                "settings_bench: %d rounds, %zu reads per fill, %zu writes per Apply (median per round)\n"
                "  settings tree fill (reads + tree control)   %8.2f ms\n"
                "  settings model alone (reads and rules)      %8.2f ms\n"
                "  bare RegQueryValueExA loop, same reads      %8.2f ms\n"
                "settings tree fill / bare reads: %.2f\n"
                "  model alone / bare reads                    %8.2f\n"
                "  Apply with settings (plan + Execute, undo)  %8.2f ms\n"
                "  the same plan run without an undo record    %8.2f ms\n"
                "  bare registry API loop, same writes         %8.2f ms\n"
                "apply with settings / bare writes: %.2f\n"
                "  without the undo record / bare writes       %8.2f\n"
                "  apart: %zu SystemParametersInfoA calls        %8.2f ms\n",
                rounds, reads.size(), writes.size(), f, m, br, bench::Ratio(f, br), bench::Ratio(m, br), a, rr,
                bw, bench::Ratio(a, bw), bench::Ratio(rr, bw), notifications.size(), Median(parameters));
  bench::Report(text, args);
  return 0;
}
