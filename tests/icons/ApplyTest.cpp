// The icon half of Apply as data (its writes and undo are the executor's and the Undo tests'); the cache
// rebuild; the restart offer.
#include <gtest/gtest.h>

#include <tuple>

#include "IconFixtures.h"
#include "icons/IconApply.h"
#include "icons/Refresh.h"
#include "support/KeySnapshot.h"
#include "support/ScriptedSeam.h"

using namespace vx;

namespace {

const std::string kTestKey = "HKEY_CURRENT_USER\\Software\\VexillorTest";
const std::string SI = kShellIconsKey, CUR = kCursorsKey, CLSID = "HKEY_CLASSES_ROOT\\CLSID\\";

// Every item of every edition, so only Apply's conditions keep rows out: locations "<tab> <key>", captions
// "cap <key>", pointers "cur <key>". As in real lists, "Printer" is no item, "Busy" the default cursor and
// "Hand" listed on 98 only.
struct FakeLists : ListValues {
  bool hand = false;
  std::string ItemFullPath(int tab, const std::string& k) const override {
    return k == "Printer" ? "" : k == "Zip File" ? "z" : std::to_string(tab) + " " + k;  // "z": too short
  }
  std::string ItemCaption(int, const std::string& k) const override {
    return k == "Recycle Bin (empty)" ? "Wastebasket (empty)" : "cap " + k;
  }
  std::string ItemFullPathmouse(int, const std::string& k) const override {
    return k == "Busy" || (k == "Hand" && !hand) ? "" : "cur " + k;
  }
};

Environment Env(const char* code, const char* ie = "Error", bool order = false) {
  Environment env = MakeEnvironment(code, "C:\\windows", "C:\\windows\\system32", ie, order, "C:\\vx\\vexillor.exe");
  env.recycleBinKey = kTestKey + "\\Bin";  // Apply reads the bin's state from here
  return env;
}

struct Fixture {  // document types with and without a class
  FakeLists lists;
  std::vector<IconItem> catalogue;
  explicit Fixture(const Environment& env) {
    lists.hand = env.IsWin98();
    for (auto [key, cls] : {std::pair{"Bitmap Image", "Paint.Picture"}, {"MS-DOS Batch File", ""},
                            {"Text Document", "txtfile"}, {"Zip File", "zipfile"}})
    {
      IconItem item;
      item.tab = kTabSystem;
      item.caption = item.key = key;
      item.className = cls;
      catalogue.push_back(item);
    }
  }
};

std::string Set(const std::string& key, const std::string& value, const std::string& data) {
  return Describe(SetString(key, value, data));
}

TEST(IconApplyPlan, Win98WithDesktopUpdateWritesEveryItemInOrder) {
  const vxtest::RegistryScope scope{{kTestKey}};
  const Environment env = Env("Win98", "4.72.3110.0", true);
  const Fixture f(env);
  const IconApplyOptions options{.settingsTreeBuilt = true, .bitmapThumbnail = false,
                                 .currentThemePath = "C:\\t\\blue.vxtheme"};
  const std::string user = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\", DI = "\\DefaultIcon";
  std::vector<std::string> e;
  auto at = [](int tab, const std::string& item) { return std::to_string(tab) + " " + item; };
  auto over = [&](int tab, const char* value, const char* item) { e.push_back(Set(SI, value, at(tab, item))); };
  const std::pair<std::string, const char*> desktop[] = {
      {user + "{20D04FE0-3AEA-1069-A2D8-08002B30309D}", "My Computer"},
      {user + "{450D8FBA-AD25-11D0-98A8-0800361B1103}", "My Documents"},
      {user + "{208D2C60-3AEA-1069-A2D7-08002B30309D}", "Network Neighborhood"},
      {CLSID + "{871C5380-42A0-1069-A2EA-08002B30309D}", "The Internet"},
      {CLSID + "{00020D75-0000-0000-C000-000000000046}", "In Box"},
      {CLSID + "{85BBD920-42A0-1069-A2E4-08002B30309D}", "My Briefcase"}};
  for (const auto& [key, item] : desktop) e.push_back(Set(key + DI, "", at(2, item)));
  const std::string bin = kTestKey + "\\Bin" + DI;
  e.push_back(Set(bin, "", at(2, "Recycle Bin (empty)")));  // nothing stored there: the bin shows empty
  e.push_back(Set(bin, "Empty", at(2, "Recycle Bin (empty)")));
  e.push_back(Set(bin, "Full", at(2, "Recycle Bin (full)")));
  for (const auto& [key, item] : desktop) e.push_back(Set(key, "", std::string("cap ") + item));
  e.push_back(Set(kTestKey + "\\Bin", "", "Wastebasket"));
  int n = 0;  // Start, then Folders
  for (auto [v, k] : {std::pair{"19", "Programs"}, {"43", "Favorites"}, {"20", "Documents"}, {"21", "Settings"},
                      {"22", "Find"}, {"23", "Help"}, {"24", "Run..."}, {"44", "Log Off..."}, {"25", "Suspend"},
                      {"27", "Shut Down..."}, {"35", "Settings - Control Panel"}, {"37", "Settings - Printers"},
                      {"3", "Closed Folder"}, {"4", "Open Folder"}, {"36", "Program Group"}})
    over(n++ < 12 ? 3 : 4, v, k);
  const std::pair<const char*, const char*> folders[] = {
      {"{21EC2020-3AEA-1069-A2DD-08002B30309D}", "Control Panel"},
      {"{992CFFA0-F557-101A-88EC-00DD010CCC48}", "Dial-Up Networking"},
      {"{2227A280-3AEA-1069-A2DE-08002B30309D}", "Printers"}, {"{FF393560-C2A7-11CF-BFF4-444553540000}", "Url History"},
      {"{F5175861-2688-11d0-9C5E-00AA00A45957}", "Subscriptions"},
      {"{88C6C381-2E85-11D0-94DE-444553540000}", "ActiveX Cache"},
      {"{D6277990-4C6A-11CF-8D87-00AA0060F5BF}", "Scheduled Tasks"},
      {"{1A9BA3A0-143A-11CF-8350-444553540000}", "Favorites"}};
  for (auto [id, item] : folders) e.push_back(Set(CLSID + id + DI, "", at(4, item)));
  for (int i = 0; i < 3; ++i) e.push_back(Set(CLSID + folders[i].first, "", std::string("cap ") + folders[i].second));
  n = 0;  // Drives, then Others
  for (auto [v, k] : {std::pair{"5", "Floppy Drive 5.25"}, {"6", "Floppy Drive 3.5"}, {"8", "Hard Drive"},
                      {"9", "Network Drive (connected)"}, {"10", "Network Drive (offline)"}, {"11", "CD-ROM Drive"},
                      {"7", "Removable Drive"}, {"12", "RAM Drive"}, {"29", "Shortcut Overlay"},
                      {"28", "Sharing Overlay"}, {"34", "Desktop"}, {"13", "Entire Network"}, {"18", "Workgroup"},
                      {"15", "Computer"}, {"40", "Audio CD"}})
    over(n++ < 8 ? 5 : 6, v, k);
  e.push_back(Set(SI, "16", ""));  // "Printer" is no item of the list
  for (auto [v, k] : {std::pair{"0", "Default Icon"}, {"1", "Default Document"}, {"2", "MS-DOS Application"}})
    over(7, v, k);
  const std::string paint = "HKEY_CLASSES_ROOT\\Paint.Picture" + DI;
  e.push_back(Set(paint, "", at(7, "Bitmap Image")));
  e.push_back(Set(paint, "", "C:\\Program Files\\Accessories\\mspaint.exe,1"));  // the thumbnail switched off
  e.push_back(Set("HKEY_CLASSES_ROOT\\txtfile" + DI, "", at(7, "Text Document")));
  for (auto [v, k] : {std::pair{"Arrow", "Normal Select"}, {"Help", "Help Select"},
                      {"AppStarting", "Working In Background"}, {"Wait", ""}, {"Crosshair", "Precision Select"},
                      {"IBeam", "Text Select"}, {"NWPEN", "Handwriting"}, {"No", "Unavailable"},
                      {"SizeNS", "Vertical Resize"}, {"SizeWE", "Horizontal Resize"}, {"SizeNWSE", "Diagonal Resize 1"},
                      {"SizeNESW", "Diagonal Resize 2"}, {"SizeAll", "Move"}, {"UpArrow", "Alternate Select"},
                      {"Hand", "Hand"}})
    e.push_back(Set(CUR, v, *k ? std::string("cur ") + k : ""));
  for (int i = 0; i < 15; ++i) e.push_back("system parameter 87 " + std::to_string(i) + " null 0");
  e.push_back(Set(kSettingsKey, "Current Theme", "C:\\t\\blue.vxtheme"));
  EXPECT_EQ(Describe(BuildIconApplyPlan(env, f.catalogue, f.lists, options)), e);
}

// Which rows each edition writes; the bin's default follows what it shows now, in any letter case (last two).
TEST(IconApplyPlan, EachEditionWritesOnlyItsOwnRows) {
  const vxtest::RegistryScope scope{{kTestKey}};
  const std::string bin = kTestKey + "\\Bin\\DefaultIcon";
  struct { const char *code, *ie; bool order; std::string line; bool written; const char* shown = ""; } cases[] = {
      {"WinNT", "4.71.1712.6", true, "{450D8FBA", false},  // My Documents
      {"Win95", "Error", false, Set(SI, "43", "3 Favorites"), false},
      {"WinNT", "4.71.1712.6", true, Set(SI, "44", "3 Log Off..."), true},
      {"WinNT", "Error", false, Set(SI, "42", "4 Users Program Group"), true},
      {"WinNT", "Error", false, "{a4d92740-67cd-11cf-96f2-00aa00a11dd9}\\DefaultIcon\" \"\" = \"4 Dial-Up", true},
      {"WinNT", "Error", false, Set(CUR, "Hand", ""), true},  // "Hand" is not listed off 98
      {"WinNT", "Error", false, "zipfile", false},
      {"Win95", "Error", false, Set(bin, "", "2 Recycle Bin (empty)"), true, "C:\\X\\Shell32.DLL,31"},
      {"Win95", "Error", false, Set(bin, "", "2 Recycle Bin (full)"), true, "C:\\X\\shell32.dll,32"},
  };
  for (const auto& c : cases) {
    const Environment env = Env(c.code, c.ie, c.order);
    const Fixture f(env);
    modRegistry::SaveString(bin, "", c.shown);
    modRegistry::SaveString(bin, "Empty", "c:\\x\\shell32.dll,31");
    std::string all;
    for (const auto& line : Describe(BuildIconApplyPlan(env, f.catalogue, f.lists, {}))) all += line + "\n";
    EXPECT_EQ(all.find(c.line) != std::string::npos, c.written) << c.code << " " << c.ie << " " << c.line;
  }
}

// What a top-level window hears: the icon size in the registry at each of the two broadcasts (one up, then back).
std::vector<std::string> g_heard;
LRESULT CALLBACK Listener(HWND h, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_SETTINGCHANGE && wp == SPI_SETICONMETRICS)
    g_heard.push_back(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size"));
  return DefWindowProcA(h, msg, wp, lp);
}

TEST(Rebuild, WindowsHearTheBumpedSizeThenTheOldOne) {
  vxtest::KeySnapshot metrics({kWindowMetricsKey});
  WNDCLASSA wc{};
  wc.lpfnWndProc = Listener;
  wc.lpszClassName = "VxRebuildListener";
  RegisterClassA(&wc);
  HWND listener = CreateWindowExA(0, wc.lpszClassName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope(seam);
  for (auto [stored, bumped, after] : {std::tuple{"32", "33", "32"}, {"", "33", "32"}, {"48 px", "49", "48"}}) {
    g_heard.clear();  // stored "": no value at all
    if (*stored) modRegistry::SaveString(kWindowMetricsKey, "Shell Icon Size", stored);
    else modRegistry::DeleteValue(kWindowMetricsKey, "Shell Icon Size");
    RunFlags flags{.rebuildCachePending = true};
    RebuildIconCache(Env("WinNT"), flags, [] {});
    EXPECT_EQ(g_heard, (std::vector<std::string>{bumped, after})) << stored;
    EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size"), after);
    EXPECT_FALSE(flags.rebuildCachePending);
  }
  DestroyWindow(listener);
}

TEST(PromptRestartTest, YesRestartsThroughTheSeamNoRestartsLater) {
  const struct { const char* code; int answer; bool later; std::vector<bool> restarts; } cases[] = {
      {"WinNT", 1, false, {true}}, {"Win98", 1, false, {false}}, {"WinNT", 0, true, {}}};  // 1 "Yes", 0 "No"
  for (const auto& c : cases) {
    vxtest::ScriptedSeam seam;
    vxtest::SeamScope scope(seam);
    seam.promptAnswers.push_back({c.answer, false});
    RunFlags flags{.restartNeeded = true};
    PromptRestart(Env(c.code), flags);
    EXPECT_EQ(flags.restartLater, c.later);
    EXPECT_FALSE(flags.restartNeeded);
    EXPECT_EQ(seam.restarts, c.restarts) << c.code;  // the privilege is needed on NT only
  }
}

}  // namespace
