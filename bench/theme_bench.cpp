// What loading a theme costs against the profile reads that name its values. A full theme (every item
// of every section, with macros) is loaded into lists that only take the values (the load reads the
// file once itself and checks every location), and timed against a bare loop that makes one
// GetPrivateProfileStringA read per value of the same file, in the same run, several rounds each,
// interleaved; the medians are compared.
//
// Usage: theme_bench.exe [rounds] [output file]; results go to stdout and, when given, to the file.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "Bench.h"
#include "themes/Themes.h"

namespace {

using bench::Median;

constexpr int kLoadsPerRound = 20;

// Lists that hold every item of the table and keep what they are given.
class PlainLists : public vx::ThemeLists {
 public:
  explicit PlainLists(const vx::Environment& env) {
    int n = 0;
    for (const vx::ItemRow& r : vx::ItemTable()) {
      const std::string file = n % 2 ? env.systemFolder + "\\shell32.dll," : env.windowsFolder + "\\Icons\\x.ico,";
      items[{r.tab, r.key}] = file + std::to_string(n);
      ++n;
    }
  }
  std::string ItemFullPath(int tab, const std::string& key) const override {
    auto it = items.find({tab, key});
    return it == items.end() ? "" : it->second;
  }
  bool Change(int tab, const std::string& key, const std::string& location) override {
    auto it = items.find({tab, key});
    if (it == items.end()) return false;
    it->second = location;
    return true;
  }
  void ListRefresh(int) override {}
  std::map<std::pair<int, std::string>, std::string> items;
};

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  const bench::Args args = bench::ReadArgs(20);
  const int rounds = args.rounds;
  const vx::Environment env = vx::DetectEnvironment();
  char temp[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, temp);
  const std::string file = std::string(temp) + "theme_bench.vxtheme";
  DeleteFileA(file.c_str());
  PlainLists lists(env);
  vx::SaveThemeFile(file, env, lists);
  const std::vector<vx::ThemeEntry> entries = vx::ThemeEntries(vx::ThemeFormat::Own, env);

  std::vector<double> load, bare;
  size_t sink = 0;
  for (int r = 0; r < rounds; ++r) {
    auto t0 = bench::Clock::now();
    for (int i = 0; i < kLoadsPerRound; ++i) sink += static_cast<size_t>(vx::LoadTheme(file, env, lists).changed);
    auto t1 = bench::Clock::now();
    for (int i = 0; i < kLoadsPerRound; ++i)
      for (const vx::ThemeEntry& e : entries) {
        char buffer[128];
        sink += GetPrivateProfileStringA(e.section.c_str(), e.key.c_str(), "", buffer, 127, file.c_str());
      }
    auto t2 = bench::Clock::now();
    load.push_back(bench::Millis(t0, t1) / kLoadsPerRound);
    bare.push_back(bench::Millis(t1, t2) / kLoadsPerRound);
  }
  DeleteFileA(file.c_str());

  char text[512];
  std::snprintf(text, sizeof text,
                "theme load: %.3f ms median of %d rounds (%zu values)\n"
                "bare reads: %.3f ms (%.1f us a read)\n"
                "theme load / bare reads: %.2f\n",
                Median(load), rounds, entries.size(), Median(bare), Median(bare) * 1000 / entries.size(),
                Median(load) / Median(bare));
  bench::Report(text, args);
  return sink == 0;
}
