// Generated hostile theme files (shares behind quotes and variables, devices, addresses, streams, UTF-8
// and UTF-16 with characters no code page holds, long lines and odd values) go through the load and
// both imports: nothing may crash or hang, every refusal has a reason, and no network or device
// location may reach a list (drawn through ExtractIconA) or an Apply plan.
#include <gtest/gtest.h>
#include <shlwapi.h>

#include <algorithm>
#include <map>
#include <random>

#include "icons/IconApply.h"
#include "icons/IconFixtures.h"
#include "themes/ThemeFile.h"
#include "themes/ThemeFixtures.h"

namespace {

// 1000 files in four shards, so that no single ctest test runs for minutes under Wine; every 25th file
// also goes through real list controls and an Apply plan.
constexpr int kShards = 4, kFilesPerShard = 250, kRealListsEvery = 25;

// Judged apart from the program's own test: by the shell's path functions on the text with its quotes
// taken out and its variables expanded by the system, and by the names of the devices.
bool LeavesTheMachine(const std::string& location) {
  std::string plain;
  for (char c : location)
    if (c != '"') plain += c;
  char expanded[4096] = {};
  const DWORD n = ExpandEnvironmentStringsA(plain.c_str(), expanded, sizeof expanded);
  for (std::string form : {plain, n > 0 && n <= sizeof expanded ? std::string(expanded) : plain}) {
    form.erase(std::remove(form.begin(), form.end(), '"'), form.end());
    const std::string s = form.substr(std::min(form.find_first_not_of(" \t"), form.size()));
    const bool twoSlashes = s.size() >= 2 && (s[0] == '\\' || s[0] == '/') && (s[1] == '\\' || s[1] == '/');
    if (twoSlashes || PathIsUNCA(s.c_str()) || PathIsURLA(s.c_str()) || s.rfind("\\??\\", 0) == 0) return true;
    if (s.find(':', 2) != std::string::npos || (s.size() > 1 && s.find(':') != std::string::npos && s[1] != ':'))
      return true;  // a stream or a scheme
    std::string part;
    const std::string path = s.substr(0, s.rfind(','));  // the icon index is no part of the file
    for (size_t i = 0; i <= path.size(); ++i) {
      if (i < path.size() && path[i] != '\\' && path[i] != '/') {
        part += static_cast<char>(toupper(static_cast<unsigned char>(path[i])));
        continue;
      }
      part = part.substr(0, part.find('.'));
      while (!part.empty() && part.back() == ' ') part.pop_back();
      for (const char* device : {"CON", "NUL", "PRN", "AUX", "COM1", "COM3", "LPT1", "CONIN$", "CONOUT$"})
        if (part == device) return true;
      part.clear();
    }
  }
  return false;
}

class Generator {
 public:
  explicit Generator(unsigned seed) : rng_(seed) {}

  std::string File() {
    std::string text;
    const int sections = Pick(1, 12);
    for (int s = 0; s < sections; ++s) {
      text.append("[").append(Section()).append("]").append(Eol());
      const int keys = Pick(0, 25);
      for (int k = 0; k < keys; ++k) text.append(Key()).append("=").append(Value()).append(Eol());
      if (Chance(10)) text += std::string(static_cast<size_t>(Pick(300, 9000)), 'x') + Eol();  // a long line
    }
    const int form = Pick(0, 9);  // now and then UTF-16 or a UTF-8 mark
    return form == 0 ? Utf16(text) : form == 1 ? text.insert(0, "\xEF\xBB\xBF") : text;
  }

 private:
  int Pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
  bool Chance(int percent) { return Pick(0, 99) < percent; }
  std::string Eol() { return Chance(80) ? "\r\n" : Chance(50) ? "\n" : "\r"; }

  std::string Random(int maxLength) {
    std::string s;
    const int n = Pick(0, maxLength);
    for (int i = 0; i < n; ++i) s += static_cast<char>(Pick(0, 255));
    return s;
  }

  // Mostly the sections and keys the loaders read (so that values land), sometimes anything.
  std::string Section() {
    static const std::vector<std::string> known = [] {
      std::vector<std::string> names;
      const vx::Environment env = vx::MakeEnvironment("Win98", "C:\\W", "C:\\W\\S", "4.72", true, "C:\\V\\v.exe");
      for (auto format : {vx::ThemeFormat::Own, vx::ThemeFormat::Plus})
        for (const vx::ThemeEntry& e : vx::ThemeEntries(format, env)) {
          keys_[e.section].push_back(e.key);
          if (names.empty() || names.back() != e.section) names.push_back(e.section);
        }
      return names;
    }();
    section_ = Chance(80) ? known[static_cast<size_t>(Pick(0, static_cast<int>(known.size()) - 1))] : Random(40);
    return section_;
  }

  std::string Key() {
    auto it = keys_.find(section_);
    if (it == keys_.end() || Chance(15)) return Random(30);
    return it->second[static_cast<size_t>(Pick(0, static_cast<int>(it->second.size()) - 1))];
  }

  std::string Value() {
    static const char* const remote[] = {
        "\\\\attacker\\share\\x.ico,0", "\\\\attacker\\share\\x.cur", "//attacker/share/x.ico,3",
        "\\\\?\\UNC\\attacker\\s\\x.ico,1", "\\\\.\\pipe\\attacker,0", "\\??\\UNC\\attacker\\s\\x.ico",
        "http://attacker/x.ico,0", "HTTPS://attacker/x.cur", "file://attacker/s/x.ico,2", "  \\\\attacker\\s\\y.ico",
        "\\/attacker\\s\\x.ico", "\"\\\\attacker\\s\\x.ico\",0", "\"\\\\attacker\"\\s\\x.ico",
        "%VX_FUZZ_SHARE%\\x.ico,0", "%VX_FUZZ_UNSET%\\x.ico", "COM1", "nul.ico,0", "C:\\x\\LPT1.ico,0",
        "CONIN$", "C:\\x\\aux .cur", "C:\\x.ico:evil,0", "\\\\.\\COM3,0"};
    constexpr int kRemote = sizeof remote / sizeof *remote;
    static const char* const index[] = {",-1", ",65535", ",65536", ",-32769", ",2147483648", ",-99999999999999",
                                        ",999999999999999999999", ",", ",x", ",--5", ",+7", ",0x10"};
    switch (Pick(0, 9)) {
      case 0: case 1: return remote[Pick(0, kRemote - 1)];
      case 2: return std::string(Chance(50) ? "%ThemeDir%" : "%windir%") + remote[Pick(0, kRemote - 1)];
      case 3: return "C:\\Icons\\x.ico" + std::string(index[Pick(0, 11)]);
      case 4: return std::string(static_cast<size_t>(Pick(100, 1500)), 'a') + index[Pick(0, 11)];
      case 5: return "C:\\a" + std::string(1, '\0') + "\\\\attacker\\s,0";
      case 6: return Chance(50) ? Random(200) : "C:\\\xE4\xB8\x80\\x.ico,0";  // U+4E00 in UTF-8
      case 7: return "%WinSysDir%shell32.dll,3";
      default: return "C:\\x\\" + Random(20) + ".ico," + std::to_string(Pick(-40000, 40000));
    }
  }

  static std::string Utf16(const std::string& text) {
    std::string out = "\xFF\xFE";
    for (char c : text) out += std::string{c, '\0'};
    return out;
  }

  std::mt19937 rng_;
  std::string section_;
  static inline std::map<std::string, std::vector<std::string>> keys_;
};

class HostileThemes : public testing::TestWithParam<int> {};

TEST_P(HostileThemes, NoCrashNoHangNoNetworkPath) {
  vxtest::CatalogueRegistry registry;
  vxtest::ScratchFolder folder("vxhostile");
  SetEnvironmentVariableA("VX_FUZZ_SHARE", "\\\\attacker\\home");
  SetEnvironmentVariableA("VX_FUZZ_UNSET", nullptr);
  const vx::Environment env = vxtest::Env("Win98", "4.72", true);
  vxtest::RealLists real(env);
  vx::ListBoxThemeLists realLists(real.lists);
  Generator generate(20261123u + static_cast<unsigned>(GetParam()));
  size_t refused = 0, changed = 0;
  for (int i = 0; i < kFilesPerShard; ++i) {
    const std::string file = folder.File(std::to_string(i) + ".vxtheme");
    vxtest::WriteBytes(file, generate.File());
    vxtest::RecordingLists lists(env);
    for (auto load : {&vx::LoadTheme, &vx::ImportPlusTheme, &vx::ImportMotif}) {
      const vx::LoadReport report = load(file, env, lists);
      refused += report.refused.size();
      for (const vx::Refusal& r : report.refused) ASSERT_FALSE(r.reason.empty()) << r.value;
      if (i % kRealListsEvery == 0) load(file, env, realLists);
    }
    changed += lists.changes.size();
    for (const auto& c : lists.changes) ASSERT_FALSE(LeavesTheMachine(c.location)) << i << ": " << c.location;
    DeleteFileA(file.c_str());
  }
  EXPECT_GT(refused, static_cast<size_t>(kFilesPerShard));
  EXPECT_GT(changed, static_cast<size_t>(kFilesPerShard) * 10);  // both kinds planted often enough to count

  for (const vx::IconItem& item : real.catalogue)
    EXPECT_FALSE(LeavesTheMachine(realLists.ItemFullPath(item.tab, item.key))) << item.key;
  for (const vx::Step& step : vx::BuildIconApplyPlan(env, real.catalogue, real.lists, {}))
    EXPECT_FALSE(LeavesTheMachine(step.text)) << vx::Describe(step);
}

INSTANTIATE_TEST_SUITE_P(Shards, HostileThemes, testing::Range(0, kShards));

}  // namespace
