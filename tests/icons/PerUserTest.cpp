// The XP family (Windows XP to 11): Apply writes per user and only what differs, keeps what Windows
// wrote itself, and Default Icon takes the per-user override away. Real lists, real registry.
#include <gtest/gtest.h>

#include <algorithm>

#include "IconFixtures.h"
#include "app/JournalCheck.h"
#include "apply/Executor.h"
#include "apply/Journal.h"
#include "icons/IconApply.h"
#include "icons/IconEdits.h"
#include "support/ScriptedSeam.h"

namespace {

using vx::kTabDesktop, vx::kTabDrives, vx::kTabFolders, vx::kTabPointers, vx::kTabSystem;

const std::string kExplorer = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\CLSID";
const std::string kMyComputer = "{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
const std::string kNetwork = "{208D2C60-3AEA-1069-A2D7-08002B30309D}";
const std::string kMachineComputer = "HKEY_CLASSES_ROOT\\CLSID\\" + kMyComputer + "\\DefaultIcon";
const std::string kUserComputer = kExplorer + "\\" + kMyComputer + "\\DefaultIcon";
const std::string kUserNetwork = kExplorer + "\\" + kNetwork + "\\DefaultIcon";
const std::string kDocClass = "HKEY_CLASSES_ROOT\\vxtestfile", kUserDocClass = "HKEY_CURRENT_USER\\Software\\Classes\\vxtestfile";

vx::Environment Later(bool administrator = true, unsigned nt = 0x0A00) {
  vx::Environment env = vxtest::Env("WinNT");
  vx::SetNtVersion(env, nt, administrator);
  return env;
}

class PerUser : public ::testing::Test, public vxtest::RecordingHost {
 protected:
  PerUser() : RecordingHost(Later()) {
    const std::string expand = "%SystemRoot%\\system32\\shell32.dll,-3";  // a resource id, as Windows ships it
    vxtest::WriteRaw(kMachineComputer, "", REG_EXPAND_SZ, std::string(expand.c_str(), expand.size() + 1));
    const std::string quoted = "\"" + shell + "\",17";
    vxtest::WriteRaw(kUserNetwork, "", REG_SZ, std::string(quoted.c_str(), quoted.size() + 1));
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtestfile");
    const std::string doc = "%SystemRoot%\\system32\\shell32.dll,70";
    vxtest::WriteRaw(kDocClass + "\\DefaultIcon", "", REG_EXPAND_SZ, std::string(doc.c_str(), doc.size() + 1));
    const std::string arrow = "%SystemRoot%\\cursors\\vx_arrow.cur";
    vxtest::WriteRaw(vx::kCursorsKey, "Arrow", REG_EXPAND_SZ, std::string(arrow.c_str(), arrow.size() + 1));
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\CLSID\\" + kNetwork, "LocalizedString", "Neighbours");
    before = vxtest::KeysNow(Watched());
    real = std::make_unique<vxtest::RealLists>(env);
  }

  static std::vector<std::string> Watched() {
    return {kMachineComputer, kUserNetwork, kDocClass + "\\DefaultIcon", vx::kCursorsKey};
  }
  vx::Plan Plan(const vx::Environment& e) {
    vx::IconApplyOptions options;
    options.currentThemePath = "C:\\t\\Blue Sky.vxtheme";
    return vx::BuildIconApplyPlan(e, real->catalogue, real->lists, options);
  }
  std::vector<std::string> Lines(const vx::Environment& e) {
    std::vector<std::string> lines = vx::Describe(Plan(e));
    lines.pop_back();  // the current theme, written by every Apply
    return lines;
  }
  std::string At(int t, const std::string& key) { return List(t)->ItemFullPath(key); }

  vxtest::CatalogueRegistry saved;
  vxtest::KeySnapshot user{{kExplorer, kUserDocClass, kDocClass, "HKEY_CURRENT_USER\\Control Panel\\Cursors"}};
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  const std::string shell = vxtest::Shell32();
  std::vector<std::string> before;
};

// What the shell shows is what the list shows: resource ids, quoted paths and environment strings.
TEST_F(PerUser, ListsShowWhatWindowsKeepsAndAnUnchangedApplyWritesNothing) {
  EXPECT_EQ(At(kTabDesktop, "My Computer"), shell + ",-3");
  EXPECT_EQ(At(kTabDesktop, "Network Neighborhood"), shell + ",17");
  EXPECT_EQ(List(kTabDesktop)->ItemCaption("Network Neighborhood"), "Neighbours");  // the localized name
  EXPECT_EQ(At(kTabSystem, "Text Document"), shell + ",70");
  EXPECT_EQ(At(kTabPointers, "Normal Select"), vxtest::WindowsFolder() + "\\cursors\\vx_arrow.cur,0");
  EXPECT_EQ(List(kTabFolders)->ItemInfoTip("Closed Folder"), vx::kAllUsersTip);
  EXPECT_EQ(List(kTabDesktop)->ItemInfoTip("In Box"), vx::kRetiredTip);
  EXPECT_EQ(List(kTabDesktop)->ItemInfoTip("My Computer"), "");
  EXPECT_TRUE(Lines(env).empty());
  // Windows 10 lists seventeen pointers; XP fifteen (with Hand).
  EXPECT_EQ(List(kTabPointers)->Count(), 17);
  const vx::Environment xp = Later(true, 0x0501);
  const std::vector<vx::IconItem> items = vx::BuildCatalogue(xp);
  EXPECT_EQ(std::count_if(items.begin(), items.end(), [](const vx::IconItem& i) { return i.tab == kTabPointers; }), 15);
}

// One edit, one write, to the per-user store; what Windows wrote elsewhere stays byte for byte.
TEST_F(PerUser, AnApplyWritesTheChangedItemAloneAndPerUser) {
  const std::string loc = shell + ",5";
  const auto set = [](const std::string& k, const std::string& v, const std::string& t) {
    return vx::Describe(vx::SetString(k, v, t));
  };
  const struct {
    int tab;
    const char* key;
    std::vector<std::string> lines;
  } cases[] = {
      {kTabDesktop, "My Computer", {set(kUserComputer, "", loc)}},
      {kTabSystem, "Text Document", {set(kUserDocClass + "\\DefaultIcon", "", loc)}},
      {kTabDrives, "Hard Drive", {set(vx::kShellIconsKey, "8", loc)}},  // machine-wide: an administrator's
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key);
    const std::string was = At(c.tab, c.key);
    List(c.tab)->Change(c.key, loc, -1);
    EXPECT_EQ(Lines(env), c.lines);
    EXPECT_EQ(Lines(Later(false)), c.tab == kTabDrives ? std::vector<std::string>{} : c.lines);
    const auto held = vx::HeldBackItems(Later(false), real->catalogue, vx::ListBoxValues(real->lists));
    EXPECT_EQ(held.size(), c.tab == kTabDrives ? 1u : 0u);
    List(c.tab)->Change(c.key, was, -1);
  }
  // A rename goes to the per-user name; executed, nothing else changes.
  List(kTabDesktop)->Change("My Computer", "", -1, "Workstation");
  List(kTabDesktop)->Change("My Computer", loc, -1);
  EXPECT_EQ(Lines(env), (std::vector<std::string>{set(kUserComputer, "", loc),
                                                  set(kExplorer + "\\" + kMyComputer, "", "Workstation")}));
  vx::Execute(Plan(env));
  EXPECT_EQ(vxtest::KeysNow(Watched()), before);
  EXPECT_EQ(modRegistry::GetString(kUserComputer, ""), loc);
  EXPECT_EQ(vx::DisplayName("My Computer", "HKEY_CLASSES_ROOT\\CLSID\\" + kMyComputer, kExplorer + "\\" + kMyComputer),
            "Workstation");
}

// Every value a plan of the family writes is one its item table names.
TEST_F(PerUser, EveryWriteIsAnApplyTargetOfItsRow) {
  for (const vx::IconItem& item : real->catalogue) {
    if (item.tab == kTabPointers)
      List(item.tab)->Change(item.key, "C:\\vxtest\\" + std::to_string(item.row->index) + ".cur", 0);
    else
      List(item.tab)->Change(item.key, shell + "," + std::to_string(item.row->index + 1), -1, "name " + item.key);
  }
  std::vector<vx::WriteTarget> targets;
  for (const vx::IconItem& item : real->catalogue)
    for (const vx::WriteTarget& t : vx::ApplyTargets(*item.row, env, item.className)) targets.push_back(t);
  const vx::Plan plan = Plan(env);
  ASSERT_GT(plan.size(), 60u);
  for (const vx::Step& s : plan) {
    if (s.key.empty() || s.key == vx::kSettingsKey) continue;
    const bool named = std::any_of(targets.begin(), targets.end(), [&](const vx::WriteTarget& t) {
      return t.key == s.key && (t.anyValue || t.value == s.value || _stricmp(t.value.c_str(), s.value.c_str()) == 0);
    });
    EXPECT_TRUE(named) << vx::Describe(s);
    EXPECT_TRUE(s.key.rfind("HKEY_CURRENT_USER\\", 0) == 0 || s.key == vx::kShellIconsKey) << vx::Describe(s);
  }
}

// The pointers that changed, the named scheme of all seventeen (the others as Windows wrote them), one reload.
TEST_F(PerUser, APointerChangeWritesANamedSchemeOfSeventeenRoles) {
  List(kTabPointers)->Change("Busy", "C:\\vxtest\\busy.ani", 0);
  const std::vector<std::string> lines = Lines(env);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], vx::Describe(vx::SetString(vx::kCursorsKey, "Wait", "C:\\vxtest\\busy.ani")));
  const std::string scheme = "%SystemRoot%\\cursors\\vx_arrow.cur,,,C:\\vxtest\\busy.ani,,,,,,,,,,,,,";
  EXPECT_EQ(lines[1], vx::Describe(vx::SetString(std::string(vx::kCursorsKey) + "\\Schemes", "Blue Sky", scheme)));
  EXPECT_EQ(lines[2], vx::Describe(vx::SetString(vx::kCursorsKey, "", "Blue Sky")));
  EXPECT_EQ(lines[3], vx::Describe(vx::SetDword(vx::kCursorsKey, "Scheme Source", 1)));
  EXPECT_EQ(lines[4], vx::Describe(vx::SystemParameter(SPI_SETCURSORS, 0, 0)));
}

// The journal of a per-user Apply (a named scheme, per-user icons and names) is one the program runs
// again: every step of it is one its own plans can write here.
TEST_F(PerUser, APerUserApplysJournalPassesTheJournalCheck) {
  List(kTabPointers)->Change("Busy", "C:\\vxtest\\busy.ani", 0);
  List(kTabDesktop)->Change("My Computer", shell + ",15", -1, "Workstation");
  List(kTabSystem)->Change("Text Document", shell + ",5", -1);
  char temp[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, temp);
  const std::string path = std::string(temp) + "vxtest-peruser.journal";
  {
    vx::Journal journal(path, vx::Journal::kApply);
    vx::Execute(Plan(env), &journal);
    journal.Complete();
  }
  const auto record = vx::ReadJournal(path);
  vx::RemoveJournal(path);
  ASSERT_TRUE(record);
  EXPECT_GT(record->plan.size(), 4u);
  EXPECT_EQ(vx::CheckJournal(*record, vx::BuildJournalAllowList(env)), "");
}

// On Windows' own pointer scheme, Default Icon takes each pointer back to it, and Apply writes its
// entries as Windows does and names the scheme as the Mouse settings name it.
TEST_F(PerUser, DefaultPointersAreWindowsOwnScheme) {
  vxtest::KeySnapshot machine{{vx::kWindowsSchemeKey}};
  std::string entries;
  for (int n = 1; n <= 17; ++n) entries += (n > 1 ? "," : "") + std::string("%SystemRoot%\\cursors\\vx_") + std::to_string(n) + ".cur";
  vxtest::WriteRaw(vx::kWindowsSchemeKey, vx::kWindowsScheme, REG_EXPAND_SZ, entries + std::string(1, '\0'));
  tab = kTabPointers;
  for (int n = 1; n <= 17; ++n) {
    const std::string key = List(kTabPointers)->Key(n - 1);
    List(kTabPointers)->SelItemKey(key);
    vx::cmdDefault_Click(*this);
    EXPECT_EQ(At(kTabPointers, key), vxtest::WindowsFolder() + "\\cursors\\vx_" + std::to_string(n) + ".cur,0");
  }
  const std::vector<std::string> lines = Lines(env);
  ASSERT_EQ(lines.size(), 20u);  // seventeen roles, the scheme's name and source, one reload
  EXPECT_EQ(lines[17], vx::Describe(vx::SetString(vx::kCursorsKey, "", "Windows Default")));
  EXPECT_EQ(lines[18], vx::Describe(vx::SetDword(vx::kCursorsKey, "Scheme Source", 2)));
  vx::Execute(Plan(env));
  DWORD type = 0;
  std::string bytes;
  ASSERT_TRUE(vxtest::ReadRaw(vx::kCursorsKey, "Person", type, bytes));
  EXPECT_EQ(type, static_cast<DWORD>(REG_EXPAND_SZ));
  EXPECT_EQ(bytes, std::string("%SystemRoot%\\cursors\\vx_17.cur") + std::string(1, '\0'));
}

// Default Icon goes back to what Windows keeps: Apply removes the override, and the undo puts it back.
TEST_F(PerUser, DefaultIconRemovesTheOverride) {
  modRegistry::SaveString(kUserComputer, "", shell + ",5");
  modRegistry::SaveString(vx::kShellIconsKey, "3", shell + ",9");
  real = std::make_unique<vxtest::RealLists>(env);
  const struct { int tab; const char* key; std::string store, value, shownAfter; } cases[] = {
      {kTabDesktop, "My Computer", kUserComputer, "", shell + ",-3"},
      {kTabFolders, "Closed Folder", vx::kShellIconsKey, "3", shell + ",3"},
  };
  for (const auto& c : cases) {
    tab = c.tab;
    List(c.tab)->SelItemKey(c.key);
    vx::cmdDefault_Click(*this);
    EXPECT_EQ(At(c.tab, c.key), c.shownAfter) << c.key;
  }
  EXPECT_EQ(Lines(env), (std::vector<std::string>{vx::Describe(vx::DeleteValue(kUserComputer, "")),
                                                  vx::Describe(vx::DeleteValue(vx::kShellIconsKey, "3"))}));
  const vx::ApplyResult result = vx::Execute(Plan(env));
  for (const auto& c : cases) EXPECT_FALSE(vxtest::ValueExists(c.store, c.value)) << c.key;
  vx::Execute(result.undo.plan);
  EXPECT_EQ(modRegistry::GetString(kUserComputer, ""), shell + ",5");
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), shell + ",9");
}

}  // namespace
