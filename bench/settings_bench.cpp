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

#include "app/ApplyRun.h"
#include "apply/Executor.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "settings/SettingsTree.h"
#include "system/Keys.h"
#include "ui/ListBoxIcons.h"

namespace {

using Clock = std::chrono::steady_clock;

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

// The same writes and deletions with nothing but the registry API (and the folder calls).
void BareWrites(const vx::Plan& writes) {
  for (const vx::Step& s : writes) {
    switch (s.kind) {
      case vx::StepKind::CreateFolder: CreateDirectoryA(s.key.c_str(), nullptr); continue;
      case vx::StepKind::RemoveFolder: RemoveDirectoryA(s.key.c_str()); continue;
      default: break;
    }
    HKEY key = Open(s.key, KEY_WRITE);
    if (!key && (s.kind == vx::StepKind::SetString || s.kind == vx::StepKind::SetDword)) {
      std::string sub = s.key;
      HKEY root = modRegistry::SplitKeyPath(sub);
      if (RegCreateKeyA(root, sub.c_str(), &key) != ERROR_SUCCESS) key = nullptr;
    }
    if (!key) continue;
    const DWORD number = static_cast<DWORD>(s.number);
    switch (s.kind) {
      case vx::StepKind::SetString:
        RegSetValueExA(key, s.value.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(s.text.data()),
                       static_cast<DWORD>(s.text.size()));
        break;
      case vx::StepKind::SetBinary:
        RegSetValueExA(key, s.value.c_str(), 0, REG_BINARY, reinterpret_cast<const BYTE*>(s.text.data()),
                       static_cast<DWORD>(s.text.size()));
        break;
      case vx::StepKind::SetDword:
        RegSetValueExA(key, s.value.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
        break;
      case vx::StepKind::DeleteValue: RegDeleteValueA(key, s.value.c_str()); break;
      case vx::StepKind::DeleteKey: RegDeleteKeyA(key, s.value.c_str()); break;
      default: break;
    }
    RegCloseKey(key);
  }
}

// The main window's icon lists, filled by Add_Icons as at start-up.
struct Lists {
  explicit Lists(const vx::Environment& env) {
    parent = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 400, 600, nullptr, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
    for (int t : {2, 3, 4, 5, 6, 7, 9}) {
      owned[static_cast<size_t>(t)] = std::make_unique<ui::ListBoxIcons>();
      owned[static_cast<size_t>(t)]->Create(parent, 100 + t, 0, 0, 300, 500);
      lists[static_cast<size_t>(t)] = owned[static_cast<size_t>(t)].get();
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
  const Lists lists(env);
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
    bareWrites.push_back(Millis([&] { BareWrites(writes); }));
    run.push_back(Millis([&] { vx::Run(writesOf()); }));
    parameters.push_back(Millis([&] { vx::Run(notifications); }));
  }
  vx::Run(undo.plan);
  if (!hadPolicies) modRegistry::DeleteKey(
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies", "Explorer");
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
                rounds, reads.size(), writes.size(), f, m, br, br > 0 ? f / br : 0.0, br > 0 ? m / br : 0.0, a, rr,
                bw, bw > 0 ? a / bw : 0.0, bw > 0 ? rr / bw : 0.0, notifications.size(), Median(parameters));
  std::fputs(text, stdout);
  std::fflush(stdout);
  if (!outFile.empty())
    if (FILE* out = std::fopen(outFile.c_str(), "w")) {
      std::fputs(text, out);
      std::fclose(out);
    }
  return 0;
}
