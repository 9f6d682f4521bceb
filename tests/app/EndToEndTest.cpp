// The real program driven with window messages and its real prompt dialogs, as a person would drive it;
// what Apply did is read back from the registry and the disk.
#include <gtest/gtest.h>
#include <windows.h>

#include "apply/Journal.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "settings/SettingsFixture.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace {

using namespace vx;

// The program's next prompt, answered with `button` once its text is checked.
void Answer(vxtest::RealProgram& p, const std::string& text, const char* button) {
  HWND prompt = p.Window("#32770");
  ASSERT_NE(prompt, nullptr) << text;
  EXPECT_NE(vxtest::DialogText(prompt).find(text), std::string::npos) << vxtest::DialogText(prompt);
  EXPECT_TRUE(vxtest::Press(prompt, button)) << button;
}

// One icon restored and applied: every value of the plan is written, no setting of the unseen Shell tab.
TEST(EndToEnd, RestoreOneIconApplyAndFindEveryWrite) {
  const vx::Environment env = vx::DetectEnvironment();
  const std::string closedFolderDefault = env.systemFolder + "\\shell32.dll,3";
  const std::string closedFolderBefore = env.systemFolder + "\\shell32.dll,5";
  // Everything Apply may touch is put back when the test ends, whatever happens.
  vxtest::SettingsScope settings;
  vxtest::KeySnapshot shellIcons({vx::kShellIconsKey, vx::kCursorsKey});
  vxtest::DeleteTree(vx::kShellIconsKey);
  modRegistry::SaveString(vx::kShellIconsKey, "3", closedFolderBefore);
  modRegistry::DeleteValue(vx::kWindowMetricsKey, "Shell Icon Size");
  modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", vx::kTabFolders);
  // The plan the program will carry out, worked out here from the same registry.
  const vx::Plan plan = vxtest::PlanOfListsApply(env, [](const vxtest::ApplyLists& a) {
    const vx::IconItem* item = vx::FindItem(a.catalogue, vx::kTabFolders, "Closed Folder");
    a.lists[vx::kTabFolders]->Change("Closed Folder", item->defaultFile, static_cast<int16_t>(item->defaultIndex));
  });
  vxtest::KeySnapshot classKeys(vxtest::KeysOf(plan));
  // The settings keys as they are, but the document icons and preferences, which the icon stage writes.
  std::vector<std::string> settingsKeys;
  for (const std::string& key : vx::SettingsKeys())
    if (key.find("Paint.Picture") == std::string::npos && key != vx::kSettingsKey) settingsKeys.push_back(key);
  const auto settingsBefore = vxtest::KeysNow(settingsKeys);

  vxtest::RealProgram program;
  HWND main = program.Main();
  ASSERT_NE(main, nullptr);
  HWND info = GetDlgItem(main, IDC_INFOBAR), apply = GetDlgItem(main, IDC_APPLY);
  // The Folders tab opened with its first row, "Closed Folder", selected, showing the stored icon.
  EXPECT_EQ(ui::GetText(info), closedFolderBefore);
  EXPECT_FALSE(IsWindowEnabled(apply));
  vxtest::ClickAndWait(GetDlgItem(GetDlgItem(main, IDC_PANE), IDC_DEFAULT));
  EXPECT_EQ(ui::GetText(info), closedFolderDefault);
  EXPECT_TRUE(IsWindowEnabled(apply));
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), closedFolderBefore);  // nothing before Apply

  PostMessageA(apply, BM_CLICK, 0, 0);
  Answer(program, "Do not show this dialog again", "OK");  // the rebuild notice, a real prompt dialog
  ASSERT_TRUE(vxtest::WaitUntil([&] { return !IsWindowEnabled(apply); }));

  // Every value of the plan is in the registry: Shell Icons, class icons and names, pointers, "Current Theme".
  int checked = 0;
  for (const auto& step : plan) {
    if (step.kind != vx::StepKind::SetString) continue;
    EXPECT_EQ(modRegistry::GetString(step.key, step.value), step.text) << vx::Describe(step);
    ++checked;
  }
  EXPECT_GT(checked, 60);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), closedFolderDefault);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "16"), "");
  // The cache rebuild put a missing icon size back as "32"; nothing else of the settings changed.
  EXPECT_EQ(modRegistry::GetString(vx::kWindowMetricsKey, "Shell Icon Size"), "32");
  modRegistry::DeleteValue(vx::kWindowMetricsKey, "Shell Icon Size");
  EXPECT_EQ(vxtest::KeysNow(settingsKeys), settingsBefore);
  EXPECT_TRUE(program.Close()) << "the program did not end";
}

// Killed in the middle of an Apply, the next start offers to put everything back and does so exactly.
TEST(InterruptedApply, TheNextStartPutsBackWhatAKilledApplyWrote) {
  const std::vector<std::string> keys = vxtest::KeysOf(vxtest::PlanOfListsApply(vx::DetectEnvironment()));
  vxtest::KeySnapshot snapshot(keys);
  vxtest::RegistryScope prefs({vx::kProgramKey});
  modRegistry::SaveDword(vx::kSettingsKey, "Active Tab", vx::kTabFolders);
  modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  const std::string journal = vx::JournalPath();
  vx::RemoveJournal(journal);
  char temp[MAX_PATH];
  const std::string pause = std::string(temp, GetTempPathA(MAX_PATH, temp)) + "vexillor-paused";
  DeleteFileA(pause.c_str());
  const auto before = vxtest::KeysNow(keys);

  // The program pauses before step 40 of its Apply (past the desktop, Start and folder writes).
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", "40");
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", pause.c_str());
  vxtest::RealProgram first("", vxtest::TestProgram());
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_STEP", nullptr);
  SetEnvironmentVariableA("VEXILLOR_TEST_PAUSE_FILE", nullptr);
  HWND main = first.Main();
  ASSERT_NE(main, nullptr);
  vxtest::ClickAndWait(GetDlgItem(GetDlgItem(main, IDC_PANE), IDC_DEFAULT));
  PostMessageA(GetDlgItem(main, IDC_APPLY), BM_CLICK, 0, 0);
  ASSERT_TRUE(vxtest::WaitUntil([&] { return GetFileAttributesA(pause.c_str()) != INVALID_FILE_ATTRIBUTES; }));
  first.Kill();
  DeleteFileA(pause.c_str());

  auto record = vx::ReadJournal(journal);
  ASSERT_TRUE(record);
  EXPECT_FALSE(record->complete);
  EXPECT_TRUE(record->done[39]);
  EXPECT_FALSE(record->done[40]);
  EXPECT_NE(vxtest::KeysNow(keys), before);  // half an Apply is in the registry

  // Started again, it offers to put things back; "Yes" does.
  vxtest::RealProgram second;
  HWND offer = nullptr;
  ASSERT_TRUE(vxtest::WaitUntil([&] { return (offer = second.Window("#32770", 0)) && vxtest::ClickButton(offer, "Yes"); }));
  ASSERT_TRUE(vxtest::WaitUntil([&] {
    auto r = vx::ReadJournal(journal);
    return r && r->kind == vx::Journal::kUndo && r->complete;
  }));
  EXPECT_EQ(vxtest::KeysNow(keys), before);
  EXPECT_TRUE(second.Close());
  vx::RemoveJournal(journal);
}

const std::string kPrinters = "Printers.{2227A280-3AEA-1069-A2DE-08002B30309D}";
const std::string kPanel = "Control Panel.{21EC2020-3AEA-1069-A2DD-08002B30309D}";
constexpr const char* kVerb = "HKEY_CLASSES_ROOT\\CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\Shell\\VX";

// Both Restore all commands and Note Pad on all files (whose warning answered Cancel leaves it off), then
// one Apply: the settings' restore values, fifteen empty pointers, and the Notepad verb.
TEST(SettingsEndToEnd, RestoreAllAndNotePadThenApplyWritesTheRestoreValuesAndTheVerb) {
  vxtest::SettingsScope scope;
  vxtest::KeySnapshot icons(vxtest::KeysOf(vxtest::PlanOfListsApply(DetectEnvironment())));
  modRegistry::SaveDword(kSettingsKey, "Positions", 0);
  modRegistry::SaveString(kWindowMetricsKey, "Shell Icon Size", "32");  // the rebuild puts it back as found
  const std::string zero(4, '\0');
  const struct { const char *name, *before, *after; } texts[] = {
      {"DoubleClickWidth", "9", "4"}, {"DoubleClickHeight", "9", "4"}, {"DragWidth", "7", "2"},
      {"DragHeight", "7", "2"},       {"MenuShowDelay", "100", "400"}, {"WallpaperOriginX", "5", "0"},
      {"WallpaperOriginY", "6", "0"}, {"CursorBlinkRate", "65535", "500"}, {"FontSmoothing", "1", "0"},
      {"DragFullWindows", "0", "1"},  {"WallpaperStyle", "2", "0"}};
  for (const auto& t : texts) modRegistry::SaveString(kDesktopKey, t.name, t.before);
  const std::string notepad = "HKEY_CLASSES_ROOT\\*\\Shell\\Notepad";
  vxtest::RegistryScope verb({notepad});
  modRegistry::SaveDword(kSettingsKey, "Active Tab", kTabDesktop);
  modRegistry::SaveString(kSettingsKey, "Selected", "Note Pad");
  modRegistry::SaveString(kMouseKey, "DoubleClickSpeed", "700");
  modRegistry::SaveString(kSoundKey, "Beep", "No");
  modRegistry::SaveString(kWindowMetricsKey, "MinAnimate", "0");
  modRegistry::SaveString(kWindowMetricsKey, "IconTitleWrap", "0");
  vxtest::WriteRaw(kExplorerKey, "link", REG_BINARY, zero);
  modRegistry::DeleteValue(kPoliciesKey, "NoSaveSettings");
  for (const char* name : {"NoDesktop", "NoRun", "NoClose"}) modRegistry::SaveDword(kPoliciesKey, name, 1);
  modRegistry::SaveDword(kPoliciesKey, "NoNetHood", 999);
  modRegistry::SaveString(std::string(kVerb) + "\\Command", "", "x");
  modRegistry::SaveString(kCursorsKey, "Arrow", "C:\\x.cur");
  CreateDirectoryA(scope.Cascade(kPrinters).c_str(), nullptr);

  vxtest::RealProgram p;
  HWND main = p.Main();
  ASSERT_NE(main, nullptr);
  PostMessageA(main, WM_COMMAND, IDM_TOOLS_RESTORE_SETTINGS, 0);
  Answer(p, " system settings will return them to Microsoft setup defaults.", "OK");
  ASSERT_TRUE(vxtest::WaitUntil([&] { return IsWindowEnabled(GetDlgItem(main, IDC_APPLY)) != FALSE; }));
  HWND tree = GetDlgItem(GetDlgItem(GetDlgItem(main, IDC_PANE), IDC_SETTINGS_PAGE), IDC_SETTINGS_TREE);
  EXPECT_TRUE(IsWindowVisible(tree));  // the Shell tab came to the front
  PostMessageA(tree, WM_KEYDOWN, VK_SPACE, 0);
  Answer(p, "Adding Notepad to all files causes conflicts", "Cancel");
  PostMessageA(tree, WM_KEYDOWN, VK_SPACE, 0);
  Answer(p, "Adding Notepad to all files causes conflicts", "OK");
  PostMessageA(main, WM_COMMAND, IDM_TOOLS_RESTORE_POINTERS, 0);
  Answer(p, " pointers will return them to Microsoft setup defaults.", "OK");
  // Nothing is written before Apply.
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "DoubleClickWidth"), "9");
  EXPECT_EQ(modRegistry::GetString(kCursorsKey, "Arrow"), "C:\\x.cur");
  EXPECT_LE(p.ApplyAndAnswer().size(), 1u);  // the rebuild notice, unless it was switched off; no failure

  for (const auto& t : texts) EXPECT_EQ(modRegistry::GetString(kDesktopKey, t.name), t.after) << t.name;
  EXPECT_EQ(modRegistry::GetString(kMouseKey, "DoubleClickSpeed"), "500");
  EXPECT_EQ(modRegistry::GetString(kMouseKey, "SwapMouseButtons"), "0");
  EXPECT_EQ(modRegistry::GetString(kSoundKey, "Beep"), "Yes");
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "MinAnimate"), "1");
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "IconTitleWrap"), "1");
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "Shell Icon BPP"), "4");
  EXPECT_FALSE(vxtest::ValueExists(kExplorerKey, "link"));                   // prefix on: the value goes
  EXPECT_EQ(modRegistry::GetBinary(kPoliciesKey, "NoSaveSettings"), zero);  // save on: binary-zero
  for (const char* name : {"NoDesktop", "NoRun", "NoClose", "NoNetHood", "NoDrives", "NoFind"})
    EXPECT_EQ(modRegistry::GetDword(kPoliciesKey, name), 0) << name;
  EXPECT_EQ(modRegistry::GetDword(kNetworkPoliciesKey, "NoEntireNetwork"), 0);
  EXPECT_FALSE(vxtest::KeyExists(kVerb));
  EXPECT_NE(modRegistry::GetDword(kSettingsKey, "Active Tab"), 0);
  // The delay was not clicked and stays so; the cascading menus are as they were.
  EXPECT_NE(GetFileAttributesA(scope.Cascade(kPrinters).c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetFileAttributesA(scope.Cascade(kPanel).c_str()), INVALID_FILE_ATTRIBUTES);
  for (const char* name : {"Arrow", "Help", "AppStarting", "Wait", "Crosshair", "IBeam", "NWPEN", "No", "SizeNS",
                           "SizeWE", "SizeNWSE", "SizeNESW", "SizeAll", "UpArrow", "Hand"})
    EXPECT_EQ(modRegistry::GetString(kCursorsKey, name), "") << name;
  EXPECT_EQ(modRegistry::GetString(notepad + "\\Command", ""), "NOTEPAD.EXE \"%1\"");
  EXPECT_EQ(modRegistry::GetString(notepad, ""), "&Notepad");
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(main, IDC_APPLY)));
  EXPECT_TRUE(p.Close());
}

}  // namespace
