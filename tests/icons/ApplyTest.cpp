// The icon half of Apply: the plan as data for three editions, then the plan executed against the
// prefix's registry and taken back with its undo record; the icon-cache rebuild observed from a
// window; the rebuild notice and the restart offer through a scripted seam.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <array>
#include <memory>
#include <map>
#include <utility>

#include "IconFixtures.h"
#include "icons/ApplyPlan.h"
#include "icons/IconApply.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/ListBoxIcons.h"
#include "ui/UiTest.h"
#include "ui/win.h"

using namespace vx;

namespace {

const std::string kTestKey = "HKEY_CURRENT_USER\\Software\\VexillorTest";
const std::string SI = kShellIconsKey;
const std::string CUR = kCursorsKey;
const std::string CLSID = "HKEY_CLASSES_ROOT\\CLSID\\";

// Icon lists as plain data: every listed item reads "loc <key>", caption "cap <key>", pointer "cur <key>".
class MapValues : public ListValues {
 public:
  std::map<std::pair<int, std::string>, std::string> paths, captions, mice;
  void Add(int tab, const std::string& key) {
    paths[{tab, key}] = "loc " + key;
    captions[{tab, key}] = "cap " + key;
    if (tab == kTabPointers) mice[{tab, key}] = "cur " + key;
  }
  std::string ItemFullPath(int tab, const std::string& key) const override { return Get(paths, tab, key); }
  std::string ItemCaption(int tab, const std::string& key) const override { return Get(captions, tab, key); }
  std::string ItemFullPathmouse(int tab, const std::string& key) const override { return Get(mice, tab, key); }

 private:
  static std::string Get(const std::map<std::pair<int, std::string>, std::string>& m, int tab,
                         const std::string& key) {
    auto it = m.find({tab, key});
    return it == m.end() ? std::string() : it->second;
  }
};

Environment Env(const char* code, const char* ie, bool startMenuOrder) {
  Environment env = MakeEnvironment(code, "C:\\windows", "C:\\windows\\system32", ie, startMenuOrder,
                                    "C:\\vx\\vexillor.exe");
  // The bin's current state is read from the registry; keep it on a key the test owns.
  env.recycleBinKey = kTestKey + "\\Bin";
  return env;
}

// Lists holding every item (the pointer "Hand" only on 98, as the catalogue lists it), and document
// types with and without classes.
struct Fixture {
  MapValues lists;
  std::vector<IconItem> catalogue;
};

Fixture Lists(const Environment& env) {
  Fixture f;
  auto add = [&](int tab, std::initializer_list<const char*> keys) {
    for (const char* k : keys) f.lists.Add(tab, k);
  };
  add(kTabDesktop, {"My Computer", "Network Neighborhood", "The Internet", "In Box", "My Briefcase",
                    "Recycle Bin (empty)", "Recycle Bin (full)"});
  f.lists.captions[{kTabDesktop, "Recycle Bin (empty)"}] = "Wastebasket (empty)";
  add(kTabStart, {"Programs", "Documents", "Settings", "Find", "Help", "Run...", "Suspend", "Shut Down...",
                  "Settings - Control Panel", "Settings - Printers"});
  add(kTabFolders, {"Closed Folder", "Open Folder", "Program Group", "Control Panel", "Dial-Up Networking",
                    "Printers", "Favorites", "Url History", "Scheduled Tasks"});
  add(kTabDrives, {"Floppy Drive 5.25", "Floppy Drive 3.5", "Hard Drive", "Network Drive (connected)",
                   "Network Drive (offline)", "CD-ROM Drive", "Removable Drive", "RAM Drive"});
  add(kTabOthers, {"Shortcut Overlay", "Sharing Overlay", "Desktop", "Entire Network", "Workgroup", "Computer",
                   "Audio CD"});
  add(kTabSystem, {"Bitmap Image", "Default Icon", "Default Document", "MS-DOS Application",
                   "MS-DOS Batch File", "Text Document", "Zip File"});
  f.lists.paths[{kTabSystem, "Zip File"}] = "z";  // too short to be a location
  add(kTabPointers, {"Normal Select", "Help Select", "Working In Background", "Busy", "Precision Select",
                     "Text Select", "Handwriting", "Unavailable", "Vertical Resize", "Horizontal Resize",
                     "Diagonal Resize 1", "Diagonal Resize 2", "Move", "Alternate Select"});
  f.lists.mice[{kTabPointers, "Busy"}] = "";  // the Windows default cursor
  if (env.IsWin98()) add(kTabPointers, {"Hand"});
  // Listed here in every edition, so that only Apply's own conditions can keep them out.
  add(kTabDesktop, {"My Documents"});
  add(kTabStart, {"Favorites", "Log Off..."});
  add(kTabFolders, {"Subscriptions", "ActiveX Cache", "Users Program Group"});

  auto doc = [&](const char* key, const char* className) {
    IconItem item;
    item.tab = kTabSystem;
    item.key = item.caption = key;
    item.className = className;
    f.catalogue.push_back(item);
  };
  doc("Bitmap Image", "Paint.Picture");
  doc("MS-DOS Batch File", "");  // always listed, but no class registered
  doc("Text Document", "txtfile");
  doc("Zip File", "zipfile");
  return f;
}

std::string Set(const std::string& key, const std::string& value, const std::string& data) {
  return Describe(SetString(key, value, data));
}

// Expected lines, written out from the order the icon half must follow.
std::vector<std::string> Expected(const Environment& env) {
  const bool w98 = env.IsWin98(), nt = env.IsNT(), du = env.desktopUpdate;
  const std::string perUser = w98 ? "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\" : CLSID;
  const std::string myComputer = perUser + "{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
  const std::string myDocuments = perUser + "{450D8FBA-AD25-11D0-98A8-0800361B1103}";
  const std::string network = perUser + "{208D2C60-3AEA-1069-A2D7-08002B30309D}";
  const std::string internet =
      CLSID + (du ? "{871C5380-42A0-1069-A2EA-08002B30309D}" : "{FBF23B42-E3F0-101B-8488-00AA003E56F8}");
  const std::string inBox = CLSID + "{00020D75-0000-0000-C000-000000000046}";
  const std::string briefcase = CLSID + "{85BBD920-42A0-1069-A2E4-08002B30309D}";
  const std::string bin = kTestKey + "\\Bin";
  const std::string controlPanel = CLSID + "{21EC2020-3AEA-1069-A2DD-08002B30309D}";
  const std::string dialUp =
      CLSID + (nt ? "{a4d92740-67cd-11cf-96f2-00aa00a11dd9}" : "{992CFFA0-F557-101A-88EC-00DD010CCC48}");
  const std::string printers = CLSID + "{2227A280-3AEA-1069-A2DE-08002B30309D}";
  const std::string DI = "\\DefaultIcon";

  std::vector<std::string> e;
  auto icon = [&](const std::string& key, const char* item) { e.push_back(Set(key + DI, "", std::string("loc ") + item)); };
  auto name = [&](const std::string& key, const char* item) { e.push_back(Set(key, "", std::string("cap ") + item)); };
  auto over = [&](const char* value, const char* item) { e.push_back(Set(SI, value, std::string("loc ") + item)); };

  icon(myComputer, "My Computer");
  if (w98) icon(myDocuments, "My Documents");
  icon(network, "Network Neighborhood");
  icon(internet, "The Internet");
  icon(inBox, "In Box");
  icon(briefcase, "My Briefcase");
  e.push_back(Set(bin + DI, "", "loc Recycle Bin (empty)"));  // the bin's key holds nothing: shows empty
  e.push_back(Set(bin + DI, "Empty", "loc Recycle Bin (empty)"));
  e.push_back(Set(bin + DI, "Full", "loc Recycle Bin (full)"));
  name(myComputer, "My Computer");
  if (w98) name(myDocuments, "My Documents");
  name(network, "Network Neighborhood");
  name(internet, "The Internet");
  name(inBox, "In Box");
  name(briefcase, "My Briefcase");
  e.push_back(Set(bin, "", "Wastebasket"));

  over("19", "Programs");
  if (du) over("43", "Favorites");
  over("20", "Documents");
  over("21", "Settings");
  over("22", "Find");
  over("23", "Help");
  over("24", "Run...");
  if (du) over("44", "Log Off...");
  over("25", "Suspend");
  over("27", "Shut Down...");
  over("35", "Settings - Control Panel");
  over("37", "Settings - Printers");

  over("3", "Closed Folder");
  over("4", "Open Folder");
  over("36", "Program Group");
  if (nt) over("42", "Users Program Group");
  icon(controlPanel, "Control Panel");
  icon(dialUp, "Dial-Up Networking");
  icon(printers, "Printers");
  icon(CLSID + "{FF393560-C2A7-11CF-BFF4-444553540000}", "Url History");
  if (du) {
    icon(CLSID + "{F5175861-2688-11d0-9C5E-00AA00A45957}", "Subscriptions");
    icon(CLSID + "{88C6C381-2E85-11D0-94DE-444553540000}", "ActiveX Cache");
  }
  icon(CLSID + "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}", "Scheduled Tasks");
  icon(CLSID + "{1A9BA3A0-143A-11CF-8350-444553540000}", "Favorites");
  name(controlPanel, "Control Panel");
  name(dialUp, "Dial-Up Networking");
  name(printers, "Printers");

  for (auto [v, k] : {std::pair{"5", "Floppy Drive 5.25"}, {"6", "Floppy Drive 3.5"}, {"8", "Hard Drive"},
                      {"9", "Network Drive (connected)"}, {"10", "Network Drive (offline)"}, {"11", "CD-ROM Drive"},
                      {"7", "Removable Drive"}, {"12", "RAM Drive"}, {"29", "Shortcut Overlay"},
                      {"28", "Sharing Overlay"}, {"34", "Desktop"}, {"13", "Entire Network"}, {"18", "Workgroup"},
                      {"15", "Computer"}, {"40", "Audio CD"}})
    over(v, k);
  e.push_back(Set(SI, "16", ""));  // "Printer" is no item of the list

  over("0", "Default Icon");
  over("1", "Default Document");
  over("2", "MS-DOS Application");
  e.push_back(Set("HKEY_CLASSES_ROOT\\Paint.Picture" + DI, "", "loc Bitmap Image"));
  e.push_back(Set("HKEY_CLASSES_ROOT\\txtfile" + DI, "", "loc Text Document"));

  for (auto [v, k] : {std::pair{"Arrow", "Normal Select"}, {"Help", "Help Select"},
                      {"AppStarting", "Working In Background"}, {"Wait", ""}, {"Crosshair", "Precision Select"},
                      {"IBeam", "Text Select"}, {"NWPEN", "Handwriting"}, {"No", "Unavailable"},
                      {"SizeNS", "Vertical Resize"}, {"SizeWE", "Horizontal Resize"}, {"SizeNWSE", "Diagonal Resize 1"},
                      {"SizeNESW", "Diagonal Resize 2"}, {"SizeAll", "Move"}, {"UpArrow", "Alternate Select"},
                      {"Hand", w98 ? "Hand" : ""}})
    e.push_back(Set(CUR, v, *k ? std::string("cur ") + k : std::string()));
  for (int i = 0; i < 15; ++i) e.push_back("system parameter 87 " + std::to_string(i) + " null 0");
  e.push_back(Set("HKEY_CURRENT_USER\\Software\\Quenby\\Vexillor\\Settings", "Current Theme", "C:\\t\\blue.vxtheme"));
  return e;
}

class IconApplyPlan : public ::testing::Test {
 protected:
  vxtest::RegistryScope scope{{kTestKey}};
};

TEST_F(IconApplyPlan, WritesEveryItemInOrderForEachEdition) {
  IconApplyOptions options;
  options.currentThemePath = "C:\\t\\blue.vxtheme";
  const struct {
    const char* code;
    const char* ie;
    bool startMenuOrder;
  } editions[] = {{"WinNT", "Error", false}, {"Win98", "4.72.3110.0", false}, {"Win95", "4.71.1712.6", true}};
  for (const auto& ed : editions) {
    SCOPED_TRACE(ed.code);
    const Environment env = Env(ed.code, ed.ie, ed.startMenuOrder);
    const Fixture f = Lists(env);
    EXPECT_EQ(Describe(BuildIconApplyPlan(env, f.catalogue, f.lists, options)), Expected(env));
  }
}

TEST_F(IconApplyPlan, RecycleBinDefaultFollowsWhatTheBinShowsNow) {
  const Environment env = Env("Win95", "Error", false);
  const Fixture f = Lists(env);
  const std::string binIcon = kTestKey + "\\Bin\\DefaultIcon";
  // Default value and "Empty" equal when lower-cased: the bin shows empty, so it keeps the empty icon.
  const struct {
    const char* shown;
    const char* empty;
    const char* expected;
  } cases[] = {{"C:\\X\\Shell32.dll,31", "c:\\x\\shell32.dll,31", "loc Recycle Bin (empty)"},
               {"C:\\X\\shell32.dll,32", "C:\\X\\shell32.dll,31", "loc Recycle Bin (full)"}};
  for (const auto& c : cases) {
    modRegistry::SaveString(binIcon, "", c.shown);
    modRegistry::SaveString(binIcon, "Empty", c.empty);
    const Plan plan = BuildIconApplyPlan(env, f.catalogue, f.lists, IconApplyOptions{});
    EXPECT_EQ(Describe(plan[5]), Set(binIcon, "", c.expected)) << c.shown;
  }
}

TEST(IconApplyBitmap, WritesOnlyWhenTheTreeDecides) {
  const std::string icon = "HKEY_CLASSES_ROOT\\Paint.Picture\\DefaultIcon";
  const std::vector<std::string> on = {Set("HKEY_CLASSES_ROOT\\.bmp", "", "Paint.Picture"),
                                       Set("HKEY_CLASSES_ROOT\\.bmp\\ShellNew", "Command", ""),
                                       Set(icon, "", "%1")};
  const std::vector<std::string> off = {Set(icon, "", "C:\\Program Files\\Accessories\\mspaint.exe,1")};
  const struct {
    bool built, autoApply;
    std::optional<bool> state;
    std::vector<std::string> expected;
  } cases[] = {{true, false, true, on},   {true, false, false, off}, {false, false, true, {}},
               {true, true, true, {}},    {true, false, std::nullopt, {}}};
  for (const auto& c : cases) {
    IconApplyOptions o;
    o.settingsTreeBuilt = c.built;
    o.autoApplyMode = c.autoApply;
    o.bitmapThumbnail = c.state;
    EXPECT_EQ(Describe(BitmapThumbnailSteps(o)), c.expected) << c.built << c.autoApply;
  }
  // In the plan the writes follow the bitmap's own class icon.
  const Environment env = Env("WinNT", "Error", false);
  const Fixture f = Lists(env);
  IconApplyOptions o;
  o.settingsTreeBuilt = true;
  o.bitmapThumbnail = false;
  const auto lines = Describe(BuildIconApplyPlan(env, f.catalogue, f.lists, o));
  const auto at = std::find(lines.begin(), lines.end(), Set("HKEY_CLASSES_ROOT\\Paint.Picture\\DefaultIcon", "",
                                                            "loc Bitmap Image"));
  ASSERT_NE(at, lines.end());
  EXPECT_EQ(*(at + 1), off[0]);
}

TEST(ApplyPlanDescribe, OneLinePerStep) {
  EXPECT_EQ(Describe(SetDword("HKEY_CURRENT_USER\\K", "n", 7)), "set dword \"HKEY_CURRENT_USER\\K\" \"n\" = 7");
  EXPECT_EQ(Describe(SetBinary("HKEY_CURRENT_USER\\K", "b", std::string("\1\0\0\0", 4))),
            "set binary \"HKEY_CURRENT_USER\\K\" \"b\" = 01 00 00 00");
  EXPECT_EQ(Describe(DeleteValue("HKEY_CURRENT_USER\\K", "")), "delete value \"HKEY_CURRENT_USER\\K\" \"\"");
  EXPECT_EQ(Describe(DeleteKey("HKEY_CLASSES_ROOT\\*", "QuickView")), "delete key \"HKEY_CLASSES_ROOT\\*\" \"QuickView\"");
  EXPECT_EQ(Describe(SystemParameter(20, 0, 3, std::string("C:\\w.bmp\0", 9))),
            "system parameter 20 0 \"C:\\w.bmp\\x00\" 3");
  EXPECT_EQ(Describe(Broadcast(46, 0)), "broadcast WM_SETTINGCHANGE 46 0");
}

// Executing writes the registry, and the undo record puts every touched value and key back exactly.
TEST(IconApplyExecute, WritesTheRegistryAndUndoRestoresIt) {
  vxtest::RegistryScope scope{{kTestKey, SI, CUR, vxtest::kProgramKey, "HKEY_CLASSES_ROOT\\VexillorTest.Text"}};
  Environment env = Env("WinNT", "Error", false);
  Fixture f = Lists(env);
  f.catalogue[2].className = "VexillorTest.Text";  // Text Document: a class the test owns
  modRegistry::SaveString(CUR, "Arrow", "C:\\old\\arrow.cur");
  IconApplyOptions options;
  options.settingsTreeBuilt = true;
  options.bitmapThumbnail = true;
  options.currentThemePath = "C:\\t\\blue.vxtheme";
  const Plan plan = BuildIconApplyPlan(env, f.catalogue, f.lists, options);

  struct Before {
    bool keyExisted, valueExisted;
    DWORD type;
    std::string bytes;
  };
  std::vector<Before> before;
  for (const Step& s : plan) {
    Before b{vxtest::KeyExists(s.key), false, 0, {}};
    b.valueExisted = vxtest::ReadRaw(s.key, s.value, b.type, b.bytes);
    before.push_back(b);
  }

  const UndoRecord undo = Execute(plan);
  EXPECT_TRUE(undo.exact);
  // The last write of a value stands (the thumbnail's "%1" follows the bitmap's own icon).
  std::map<std::pair<std::string, std::string>, std::string> last;
  for (const Step& s : plan)
    if (s.kind == StepKind::SetString) last[{s.key, s.value}] = s.text;
  for (const auto& [where, text] : last)
    EXPECT_EQ(modRegistry::GetString(where.first, where.second), text) << where.first << " " << where.second;
  EXPECT_EQ(modRegistry::GetString("HKEY_CLASSES_ROOT\\Paint.Picture\\DefaultIcon", ""), "%1");
  EXPECT_EQ(modRegistry::GetString(SI, "16"), "");
  EXPECT_EQ(modRegistry::GetString(CUR, "Wait"), "");
  EXPECT_EQ(modRegistry::GetString(CUR, "Arrow"), "cur Normal Select");
  EXPECT_EQ(modRegistry::GetString("HKEY_CLASSES_ROOT\\.bmp", ""), "Paint.Picture");
  EXPECT_EQ(modRegistry::GetString(vxtest::kProgramKey + "\\Settings", "Current Theme"), "C:\\t\\blue.vxtheme");

  Execute(undo.plan);
  for (size_t i = 0; i < plan.size(); ++i) {
    const Step& s = plan[i];
    if (s.kind != StepKind::SetString) continue;
    SCOPED_TRACE(Describe(s));
    EXPECT_EQ(vxtest::KeyExists(s.key), before[i].keyExisted);
    DWORD type = 0;
    std::string bytes;
    ASSERT_EQ(vxtest::ReadRaw(s.key, s.value, type, bytes), before[i].valueExisted);
    if (before[i].valueExisted) {
      EXPECT_EQ(type, before[i].type);
      EXPECT_EQ(bytes, before[i].bytes);
    }
  }
  EXPECT_EQ(modRegistry::GetString(CUR, "Arrow"), "C:\\old\\arrow.cur");
}

TEST(ApplyPlanUndo, PutsBackTypesRemovedValuesAndCreatedKeys) {
  vxtest::RegistryScope scope{{kTestKey}};
  const std::string k = kTestKey + "\\Undo";
  vxtest::WriteRaw(k, "expand", REG_EXPAND_SZ, std::string("%SystemRoot%\\a.dll,1", 21));
  vxtest::WriteRaw(k, "gone", REG_BINARY, std::string("\1\0", 2));
  modRegistry::CreateKey(k + "\\Old");
  const Plan plan = {SetString(k, "expand", "C:\\b.dll,2"), SetDword(k + "\\A\\B\\C", "n", 5),
                     SetString(k + "\\A\\B", "", "x"), DeleteValue(k, "gone"), DeleteValue(k, "never"),
                     CreateKey(k + "\\New\\Deep"), SetString(k, "added", "y")};
  const UndoRecord undo = Execute(plan);
  EXPECT_TRUE(undo.exact);
  EXPECT_EQ(modRegistry::GetDword(k + "\\A\\B\\C", "n"), 5);
  EXPECT_FALSE(vxtest::ValueExists(k, "gone"));
  Execute(undo.plan);
  DWORD type = 0;
  std::string bytes;
  ASSERT_TRUE(vxtest::ReadRaw(k, "expand", type, bytes));
  EXPECT_EQ(type, static_cast<DWORD>(REG_EXPAND_SZ));
  EXPECT_EQ(bytes, std::string("%SystemRoot%\\a.dll,1", 21));
  ASSERT_TRUE(vxtest::ReadRaw(k, "gone", type, bytes));
  EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
  EXPECT_FALSE(vxtest::ValueExists(k, "added"));
  EXPECT_FALSE(vxtest::KeyExists(k + "\\A"));
  EXPECT_FALSE(vxtest::KeyExists(k + "\\New"));
  // A deleted key comes back empty only, and the record says so.
  modRegistry::SaveString(k + "\\Old", "v", "1");
  const UndoRecord partial = Execute({DeleteKey(k, "Old")});
  EXPECT_FALSE(partial.exact);
  Execute(partial.plan);
  EXPECT_TRUE(vxtest::KeyExists(k + "\\Old"));
}

// The same plan read from real list controls filled by Add_Icons: with no cursor scheme every pointer
// is the Windows default and writes an empty value, and keys the lists do not hold read as empty.
TEST(IconApplyLists, RealListsFilledByAdd_Icons) {
  vxtest::SavedValues saved(vxtest::CatalogueValues());
  vxtest::RegistryScope scope{{vxtest::kProgramKey}};
  const Environment env = vxtest::Env("WinNT");
  HWND parent = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 400, 600, nullptr, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
  std::array<std::unique_ptr<ui::ListBoxIcons>, 10> owned;
  IconLists lists{};
  for (int t : {2, 3, 4, 5, 6, 7, 9}) {
    owned[t] = std::make_unique<ui::ListBoxIcons>();
    owned[t]->Create(parent, 100 + t, 0, 0, 300, 500);
    lists[t] = owned[t].get();
  }
  const std::vector<IconItem> catalogue = Add_Icons(env, lists);
  const Plan plan = BuildIconApplyPlan(env, catalogue, lists, IconApplyOptions{});
  const auto lines = Describe(plan);
  auto has = [&](const std::string& line) { return std::find(lines.begin(), lines.end(), line) != lines.end(); };

  EXPECT_TRUE(has(Set(env.myComputerKey + "\\DefaultIcon", "", lists[kTabDesktop]->ItemFullPath("My Computer"))));
  EXPECT_TRUE(has(Set(SI, "3", lists[kTabFolders]->ItemFullPath("Closed Folder"))));
  EXPECT_TRUE(has(Set(SI, "16", "")));
  EXPECT_TRUE(has(Set(SI, "42", lists[kTabFolders]->ItemFullPath("Users Program Group"))));
  for (const std::string& line : lines) {
    EXPECT_EQ(line.find("{450D8FBA"), std::string::npos) << line;  // My Documents: Windows 98 only
    EXPECT_EQ(line.find("= \",0\""), std::string::npos) << line;   // nothing read from an empty slot
  }

  const auto first = std::find(lines.begin(), lines.end(), Set(CUR, "Arrow", ""));
  ASSERT_GE(lines.end() - first, 31);
  for (size_t i = 0; i < 15; ++i) {
    EXPECT_EQ(first[i], Set(CUR, vxtest::kCursorRoles[i], ""));
    EXPECT_EQ(first[15 + i], "system parameter 87 " + std::to_string(i) + " null 0");
  }

  const UndoRecord undo = Execute(plan);
  for (const std::string& role : vxtest::kCursorRoles) {
    EXPECT_TRUE(vxtest::ValueExists(CUR, role));
    EXPECT_EQ(modRegistry::GetString(CUR, role), "") << role;
  }
  Execute(undo.plan);
  for (auto& l : owned) l.reset();
  DestroyWindow(parent);
}

// Records "Shell Icon Size" whenever a top-level window hears of new icon metrics.
std::vector<std::string> g_heard;
LRESULT CALLBACK Watcher(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) noexcept {
  if (msg == WM_SETTINGCHANGE && wParam == SPI_SETICONMETRICS && lParam == 0) {
    try {
      g_heard.push_back(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size"));
    } catch (...) {
    }
  }
  return DefWindowProcA(hwnd, msg, wParam, lParam);
}

class Rebuild : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_ = vxtest::ReadRaw(kWindowMetricsKey, "Shell Icon Size", type_, bytes_);
    WNDCLASSA wc{};
    wc.lpfnWndProc = Watcher;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "VexillorTestSettingWatcher";
    RegisterClassA(&wc);
    window_ = CreateWindowExA(0, wc.lpszClassName, "watcher", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                              wc.hInstance, nullptr);
    g_heard.clear();
  }
  void TearDown() override {
    DestroyWindow(window_);
    if (saved_) vxtest::WriteRaw(kWindowMetricsKey, "Shell Icon Size", type_, bytes_);
    else modRegistry::DeleteValue(kWindowMetricsKey, "Shell Icon Size");
  }
  vxtest::RegistryScope scope{{vxtest::kProgramKey}};
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  HWND window_ = nullptr;
  bool saved_ = false;
  DWORD type_ = 0;
  std::string bytes_;
};

TEST_F(Rebuild, BumpsTheIconSizeBetweenTwoBroadcasts) {
  const Environment env = Env("WinNT", "Error", false);
  const struct {
    const char* stored;  // nullptr: no value
    std::vector<std::string> heard;
    const char* after;
  } cases[] = {{"32", {"33", "32"}, "32"}, {nullptr, {"33", "32"}, "32"}, {"", {"33", "32"}, "32"},
               {"48", {"49", "48"}, "48"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored ? c.stored : "missing");
    if (c.stored) modRegistry::SaveString(kWindowMetricsKey, "Shell Icon Size", c.stored);
    else modRegistry::DeleteValue(kWindowMetricsKey, "Shell Icon Size");
    g_heard.clear();
    int refreshed = 0;
    bool pending = true;
    RebuildIconCache(env, pending, [&] { ++refreshed; });
    EXPECT_EQ(g_heard, c.heard);
    EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size"), c.after);
    EXPECT_EQ(refreshed, 1);
    EXPECT_FALSE(pending);
  }
  ASSERT_EQ(seam.prompts.size(), 4u);  // the notice after each rebuild
}

TEST_F(Rebuild, NoticeUnlessSwitchedOffAndFlagClearedEitherWay) {
  const Environment env = Env("Win98", "Error", false);
  bool pending = true;
  seam.promptAnswers.push_back({1, true});  // OK, with "Do not show this dialog again" ticked
  ShowRebuildNotice(env, pending);
  EXPECT_FALSE(pending);
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message.substr(0, 49), "Vexillor has notified Windows 98 of your changes.");
  EXPECT_EQ(modRegistry::GetDword(vxtest::kProgramKey + "\\Settings", "Dialog Rebuild"), 1);
  pending = true;
  ShowRebuildNotice(env, pending);
  EXPECT_FALSE(pending);
  EXPECT_EQ(seam.prompts.size(), 1u);
}

TEST(PromptRestartTest, YesRestartsThroughTheSeamNoRestartsLater) {
  const struct {
    const char* code;
    int answer;  // slot 1 "Yes", slot 0 "No"
    bool later;
    std::vector<bool> restarts;  // recorded privilege flags
  } cases[] = {{"WinNT", 1, false, {true}}, {"Win98", 1, false, {false}}, {"WinNT", 0, true, {}}};
  for (const auto& c : cases) {
    vxtest::ScriptedSeam seam;
    vxtest::SeamScope scope(seam);
    seam.promptAnswers.push_back({c.answer, false});
    bool needed = true;
    EXPECT_EQ(PromptRestart(Env(c.code, "Error", false), needed), c.later);
    EXPECT_FALSE(needed);
    EXPECT_EQ(seam.restarts, c.restarts);
    ASSERT_EQ(seam.prompts.size(), 1u);
    EXPECT_EQ(seam.prompts[0].buttons[1], "Yes");
  }
}

// The real prompt dialog, answered by clicking its buttons; only the restart itself is recorded.
class RealPromptsSeam : public ui::RealSeam {
 public:
  std::vector<bool> restarts;
  void RestartWindows(bool privilege) override { restarts.push_back(privilege); }
};

TEST(PromptRestartDialog, TheRealPromptsAnswerDecides) {
  RealPromptsSeam seam;
  vxtest::SeamScope scope(seam);
  for (const char* button : {"No", "Yes"}) {
    bool needed = true;
    const bool later = vxtest::RunModal(
        "Vexillor",
        {[button](HWND dialog) {
          for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            if (ui::GetText(child) == button) vxtest::Click(child);
        }},
        [&] { return PromptRestart(Env("WinNT", "Error", false), needed); });
    EXPECT_FALSE(needed);
    EXPECT_EQ(later, std::string(button) == "No");
  }
  EXPECT_EQ(seam.restarts, std::vector<bool>{true});
}

TEST_F(Rebuild, ApplyRebuildsAndOffersRestartOnlyWhenFlagged) {
  vxtest::RegistryScope keys{{kTestKey, SI, CUR}};
  const Environment env = Env("WinNT", "Error", false);
  const Fixture f = Lists(env);
  for (bool flagged : {false, true}) {
    SCOPED_TRACE(flagged);
    seam.prompts.clear();
    seam.promptAnswers = {{1, false}, {0, false}};  // notice: OK; restart: No
    g_heard.clear();
    bool pending = flagged, needed = flagged, later = false;
    int refreshed = 0;
    const UndoRecord undo =
        ApplyIconChanges(env, f.catalogue, f.lists, {}, pending, needed, later, [&] { ++refreshed; });
    EXPECT_EQ(modRegistry::GetString(SI, "19"), "loc Programs");
    EXPECT_FALSE(pending);
    EXPECT_FALSE(needed);
    EXPECT_EQ(later, flagged);
    EXPECT_EQ(refreshed, flagged ? 1 : 0);
    EXPECT_EQ(g_heard.size(), flagged ? 2u : 0u);
    EXPECT_EQ(seam.prompts.size(), flagged ? 2u : 0u);
    Execute(undo.plan);
  }
}

}  // namespace
