// The own theme format: what a save writes and in what order, per edition; a load gives back the same
// lists and Apply; a save never removes what it does not write.
#include <gtest/gtest.h>

#include "icons/IconApply.h"
#include "icons/IconFixtures.h"
#include "themes/ThemeFile.h"
#include "themes/ThemeFixtures.h"

namespace {

using Section = std::pair<std::string, std::vector<std::string>>;

// The sections of a file and their keys, in file order.
std::vector<Section> Layout(const std::string& bytes) {
  std::vector<Section> sections;
  size_t at = 0;
  while (at < bytes.size()) {
    size_t end = bytes.find('\n', at);
    if (end == std::string::npos) end = bytes.size();
    std::string line = bytes.substr(at, end - at);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    at = end + 1;
    if (line.size() > 1 && line.front() == '[') sections.push_back({line.substr(1, line.size() - 2), {}});
    else if (!sections.empty() && line.find('=') != std::string::npos)
      sections.back().second.push_back(line.substr(0, line.find('=')));
  }
  return sections;
}

std::vector<std::string> KeysOf(const std::vector<Section>& layout, const std::string& name) {
  for (const auto& s : layout)
    if (s.first == name) return s.second;
  return {};
}

TEST(SaveTheme, CreditsThenEverySectionAndKeyInOrder) {
  vxtest::ScratchFolder folder("vxsave");
  const std::string file = folder.File("all.vxtheme");
  const vx::Environment env = vxtest::Env("Win98", "4.72", true);
  vxtest::RecordingLists lists(env);
  vx::SaveThemeFile(file, env, lists);
  const auto layout = Layout(vxtest::ReadBytes(file));

  const std::vector<Section> expected = {
      {"Software Credits", {"Software", "Company", "Author", "Website", "Email"}},
      {"Desktop Icons", {"My Computer", "My Documents", "Network Neighborhood", "The Internet", "In Box",
                         "My Briefcase", "Recycle Bin (empty)", "Recycle Bin (full)"}},
      {"Start Icons", {"Programs", "Favorites", "Documents", "Settings", "Find", "Help", "Run...", "Log Off...",
                       "Suspend", "Shut Down...", "Settings | Control Panel", "Settings | Printers"}},
      {"Folder Icons", {"Closed Folder", "Open Folder", "Program Group", "Control Panel", "Dial-Up Networking",
                        "Printers", "Url History Folder", "Favorites", "Subscriptions", "ActiveX Cache",
                        "Scheduled Tasks"}},
      {"Drive Icons", {"Floppy Drive (5.25)", "Floppy Drive (3.5)", "Hard Drive", "Network Drive",
                       "Network Drive (offline)", "CD-ROM Drive", "Removeable Drive", "RAM Drive"}},
      {"Other Icons", {"Shortcut Overlay", "Sharing", "Desktop", "Entire Network", "Workgroup", "Computer",
                       "Audio CD"}},
      {"System Icons", KeysOf(layout, "System Icons")},  // the table's own 18, counted below
      {"Pointers", {"Normal Select", "Help Select", "Working In Background", "Busy", "Precision Select",
                    "Text Select", "Handwriting", "Unavailable", "Vertical Resize", "Horizontal Resize",
                    "Diagonal Resize 1", "Diagonal Resize 2", "Move", "Alternate Select", "Hand"}}};
  EXPECT_EQ(layout, expected);
  EXPECT_EQ(KeysOf(layout, "System Icons").size(), 18u);
  char value[128] = {};
  for (auto [key, text] : {std::pair{"Software", "Vexillor 2.06"}, {"Email", "vexillor@quenby.example"}}) {
    GetPrivateProfileStringA("Software Credits", key, "", value, sizeof value, file.c_str());
    EXPECT_STREQ(value, text);
  }
}

TEST(SaveTheme, EditionConditions) {
  const struct { const char* edition; bool desktopUpdate; std::vector<std::string> present, absent; } cases[] = {
      {"Win95", false, {"Programs"}, {"Hand", "My Documents", "Log Off...", "Users Program Group",
                                      "Subscriptions", "ActiveX Cache", "Scheduled Tasks"}},
      {"Win98", false, {"Hand", "My Documents"}, {"Users Program Group", "Log Off...", "Subscriptions"}},
      {"WinNT", true, {"Users Program Group", "Log Off...", "Subscriptions", "Scheduled Tasks"}, {"Hand", "My Documents"}},
  };
  vxtest::ScratchFolder folder("vxeditions");
  for (const auto& c : cases) {
    const std::string file = folder.File(std::string(c.edition) + ".vxtheme");
    const vx::Environment env = vxtest::Env(c.edition, c.desktopUpdate ? "4.72" : "Error", c.desktopUpdate);
    vxtest::RecordingLists lists(env);
    for (const vx::ItemRow& r : vx::ItemTable()) lists.items[{r.tab, r.key}] = "C:\\Any\\x.ico,1";  // even unlisted
    vx::SaveThemeFile(file, env, lists);
    std::vector<std::string> keys;
    for (const auto& s : Layout(vxtest::ReadBytes(file))) keys.insert(keys.end(), s.second.begin(), s.second.end());
    auto has = [&](const std::string& k) { return std::find(keys.begin(), keys.end(), k) != keys.end(); };
    for (const auto& k : c.present) EXPECT_TRUE(has(k)) << c.edition << " " << k;
    for (const auto& k : c.absent) EXPECT_FALSE(has(k)) << c.edition << " " << k;
  }
}

TEST(LoadTheme, ReadsHandEverywhereAndOnlyWhatTheEditionReads) {
  vxtest::ScratchFolder folder("vxload");
  const std::string file = folder.File("98.vxtheme");
  const vx::Environment win98 = vxtest::Env("Win98");
  vxtest::RecordingLists saved(win98);
  saved.items[{vx::kTabPointers, "Hand"}] = "C:\\Cursors\\hand.cur,0";
  saved.items[{vx::kTabDesktop, "My Documents"}] = "C:\\Icons\\docs.ico,2";
  vx::SaveThemeFile(file, win98, saved);

  const vx::Environment win95 = vxtest::Env("Win95");
  vxtest::RecordingLists loaded(win95);
  loaded.items[{vx::kTabPointers, "Hand"}] = "";        // a list that holds Hand on Windows 95 gets it
  loaded.items[{vx::kTabDesktop, "My Documents"}] = "";  // but My Documents is not read there
  const vx::LoadReport report = vx::LoadTheme(file, win95, loaded);
  EXPECT_EQ(loaded.ItemFullPath(vx::kTabPointers, "Hand"), "C:\\Cursors\\hand.cur,0");
  EXPECT_EQ(loaded.ItemFullPath(vx::kTabDesktop, "My Documents"), "");
  EXPECT_TRUE(report.refused.empty());
  EXPECT_EQ(loaded.refreshed, std::vector<int>{vx::kTabPointers});  // only the pointer list is redrawn
}

TEST(SaveTheme, KeysASaveSkipsKeepTheirOldValues) {
  vxtest::ScratchFolder folder("vxover");
  const std::string file = folder.File("mix.vxtheme");
  const vx::Environment env = vxtest::Env("Win98");
  vxtest::RecordingLists first(env);
  vx::SaveThemeFile(file, env, first);

  vxtest::RecordingLists second(env);
  for (auto& [k, v] : second.items) v = "D:\\New\\" + k.second + ".ico,7";
  second.items[{vx::kTabDesktop, "In Box"}] = "";
  second.items[{vx::kTabPointers, "Busy"}] = env.exePath + ",4";
  vx::SaveThemeFile(file, env, second);

  vxtest::RecordingLists loaded(env);
  vx::LoadTheme(file, env, loaded);
  EXPECT_EQ(loaded.ItemFullPath(vx::kTabDesktop, "In Box"), "C:\\Before\\In Box.ico,1");
  EXPECT_EQ(loaded.ItemFullPath(vx::kTabPointers, "Busy"), "C:\\Before\\Busy.ico,1");
  EXPECT_EQ(loaded.ItemFullPath(vx::kTabDesktop, "My Computer"), "D:\\New\\My Computer.ico,7");
}

// Every item given a location of its own (in the system folder, the Windows folder, the theme's folder
// and elsewhere; their macros are MacroTest's), saved, and loaded into fresh lists: the same locations, the
// same Apply.
TEST(ThemeRoundTrip, EachEditionGivesTheSameListsAndTheSameApply) {
  vxtest::CatalogueRegistry registry;
  vxtest::ScratchFolder folder("vxround");
  const struct { const char* edition; bool desktopUpdate; } editions[] = {
      {"Win95", false}, {"Win98", true}, {"WinNT", false}, {"WinNT", true}};
  for (const auto& e : editions) {
    const vx::Environment env = vxtest::Env(e.edition, e.desktopUpdate ? "4.71" : "Error", e.desktopUpdate);
    const std::string file = folder.File(std::string(e.edition) + (e.desktopUpdate ? "u" : "") + ".vxtheme");
    vxtest::RealLists source(env);
    vx::ListBoxThemeLists sourceLists(source.lists);
    int n = 0;
    for (const vx::IconItem& item : source.catalogue) {
      if (item.tab == vx::kTabExplorer) continue;
      const std::string places[] = {env.systemFolder + "\\shell32.dll", env.windowsFolder + "\\Icons\\a.ico",
                                    folder.File("b.ico"), "E:\\Elsewhere\\c.ico"};
      sourceLists.Change(item.tab, item.key, places[n % 4] + "," + std::to_string(n % 40));
      ++n;
    }
    vx::SaveThemeFile(file, env, sourceLists);
    vxtest::RealLists fresh(env);
    vx::ListBoxThemeLists freshLists(fresh.lists);
    vx::LoadTheme(file, env, freshLists);
    for (const vx::IconItem& item : source.catalogue)
      EXPECT_EQ(freshLists.ItemFullPath(item.tab, item.key), sourceLists.ItemFullPath(item.tab, item.key))
          << e.edition << " " << item.key;
    EXPECT_EQ(vx::BuildIconApplyPlan(env, fresh.catalogue, fresh.lists, {}),
              vx::BuildIconApplyPlan(env, source.catalogue, source.lists, {}))
        << e.edition;
  }
}

// The same theme in every encoding a theme may come in loads alike; the mark never hides the first
// section; a character the code page cannot hold refuses its value by name instead of loading "?".
TEST(LoadTheme, EveryEncodingReadsAlikeAndForeignCharactersAreRefused) {
  // "ô" and a CJK character as this machine's ANSI code page holds them (or not).
  auto ansi = [](const wchar_t* text, bool& held) {
    char out[16] = {};
    BOOL usedDefault = FALSE;
    const int n = WideCharToMultiByte(CP_ACP, 0, text, -1, out, sizeof out, nullptr, &usedDefault);
    held = n > 1 && !usedDefault;
    return std::string(out);
  };
  bool oHeld = false, cjkHeld = false;
  const std::string o = ansi(L"\x00F4", oHeld);
  ansi(L"\x4E00", cjkHeld);
  ASSERT_TRUE(oHeld) << "the tests expect a Western code page";
  const std::string body8 = "[Desktop Icons]\r\nMy Computer = \"C:\\Ic\xC3\xB4nes\\pc.ico,2\"\r\n"
                            "In Box=C:\\\xE4\xB8\x80\\mail.ico,1\r\n[Pointers]\r\nBusy=C:\\b.ani,0\r\n";
  std::wstring wide;
  for (char c : body8) wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
  wide.replace(wide.find(L"\xC3\xB4"), 2, L"\x00F4");
  wide.replace(wide.find(L"\xE4\xB8\x80"), 3, L"\x4E00");
  auto utf16 = [&](bool bigEndian) {
    std::string out = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (wchar_t c : wide) {
      const char hi = static_cast<char>(c >> 8), lo = static_cast<char>(c & 0xFF);
      out += bigEndian ? std::string{hi, lo} : std::string{lo, hi};
    }
    return out;
  };
  std::string ansiBody = body8;
  ansiBody.replace(ansiBody.find("\xC3\xB4"), 2, o);
  ansiBody.replace(ansiBody.find("\xE4\xB8\x80"), 3, "x");  // an ANSI file has no foreign characters
  const struct { const char* name; std::string bytes; bool foreign; } cases[] = {
      {"ANSI", ansiBody, false},
      {"UTF-8", body8, true},
      {"UTF-8 with mark", "\xEF\xBB\xBF" + body8, true},
      {"UTF-16", utf16(false), true},
      {"UTF-16 big-endian", utf16(true), true},
  };
  vxtest::ScratchFolder folder("vxencodings");
  const vx::Environment env = vxtest::Env("Win98");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string file = folder.File("t.vxtheme");
    vxtest::WriteBytes(file, c.bytes);
    vxtest::RecordingLists lists(env);
    const vx::LoadReport report = vx::LoadTheme(file, env, lists);
    EXPECT_EQ(lists.ItemFullPath(vx::kTabDesktop, "My Computer"), "C:\\Ic" + o + "nes\\pc.ico,2");
    EXPECT_EQ(lists.ItemFullPath(vx::kTabPointers, "Busy"), "C:\\b.ani,0");
    if (c.foreign && cjkHeld) continue;  // a code page that holds the character loads it
    EXPECT_EQ(lists.ItemFullPath(vx::kTabDesktop, "In Box"), c.foreign ? "C:\\Before\\In Box.ico,1" : "C:\\x\\mail.ico,1");
    ASSERT_EQ(report.refused.size(), c.foreign ? 1u : 0u);
    if (c.foreign) {
      EXPECT_EQ(report.refused[0].item + " " + report.refused[0].reason, std::string("In Box ") + vx::kForeignText);
    }
  }
}

}  // namespace
