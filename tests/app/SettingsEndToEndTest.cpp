// The Shell tab and the Restore all commands in the real program, driven with window messages and real
// prompt dialogs; what Apply did is read back from the registry and the disk.
#include <gtest/gtest.h>
#include <windows.h>

#include "registry/modRegistry.h"
#include "resource.h"
#include "settings/SettingsFixture.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"

namespace {

using namespace vx;
using vxtest::DialogText;

// The program's next prompt, answered with `button` once its text is checked.
void Answer(vxtest::RealProgram& p, const std::string& text, const char* button) {
  HWND prompt = p.Window("#32770");
  ASSERT_NE(prompt, nullptr) << text;
  EXPECT_NE(DialogText(prompt).find(text), std::string::npos) << DialogText(prompt);
  EXPECT_TRUE(vxtest::Press(prompt, button)) << button;
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
