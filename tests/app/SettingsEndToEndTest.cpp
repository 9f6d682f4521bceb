// The Shell tab and the Restore all commands in the real program, driven with window messages and real
// prompt dialogs; what Apply did is read back from the registry and the disk.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "ui/ListBoxIcons.h"
#include "resource.h"
#include "settings/SettingsFixture.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"
#include "ui/win.h"

namespace {

using namespace vx;

std::string DialogText(HWND dialog) {
  std::string all;
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) all += ui::GetText(c) + "\n";
  return all;
}

// vexillor.exe with the controls these tests drive, ended when the test is over.
class Program : public vxtest::RealProgram {
 public:
  Program() {
    main = Window("VexillorMain");
    WaitForInputIdle(process(), 10000);
    if (!main) return;
    pane = GetDlgItem(main, IDC_PANE);
    page = GetDlgItem(pane, IDC_SETTINGS_PAGE);
    tree = GetDlgItem(page, IDC_SETTINGS_TREE);
    apply = GetDlgItem(main, IDC_APPLY);
  }

  // The next prompt of the program, or nullptr when none comes.
  HWND Prompt(int ms = 20000) { return Window("#32770", ms); }
  // Presses a prompt's button by its caption and waits for the prompt to go.
  static void Press(HWND prompt, const std::string& caption) {
    ASSERT_TRUE(vxtest::ClickButton(prompt, caption)) << caption << " in " << DialogText(prompt);
    vxtest::WaitUntil([&] { return !IsWindow(prompt) || !IsWindowVisible(prompt); });
  }
  void Command(int id) { PostMessageA(main, WM_COMMAND, static_cast<WPARAM>(id), 0); }
  bool ApplyEnabled() { return vxtest::WaitUntil([&] { return IsWindowEnabled(apply) != FALSE; }); }
  // Presses Apply and answers its prompts (OK to the rebuild notice, No to the restart offer) until
  // Apply greys itself again; returns the prompts' texts.
  std::vector<std::string> ApplyAndAnswer() {
    std::vector<std::string> asked;
    PostMessageA(apply, BM_CLICK, 0, 0);
    for (int waited = 0; waited < 30000 && IsWindowEnabled(apply); waited += 100) {
      HWND prompt = Prompt(0);
      if (!prompt) {
        Sleep(100);
        continue;
      }
      asked.push_back(DialogText(prompt));
      Press(prompt, vxtest::ChildWithText(prompt, "No") ? "No" : "OK");
    }
    return asked;
  }
  bool Close() {
    PostMessageA(main, WM_CLOSE, 0, 0);
    return Ended(15000);
  }

  HWND main = nullptr, pane = nullptr, page = nullptr, tree = nullptr, apply = nullptr;
};

// The keys the icon stage of Apply writes, worked out from the same registry, to be put back.
std::vector<std::string> IconStageKeys() {
  const Environment env = DetectEnvironment();
  HWND host = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 400, 400, nullptr, nullptr, nullptr, nullptr);
  std::vector<std::unique_ptr<ui::ListBoxIcons>> owned;
  IconLists lists{};
  for (int tab = kTabDesktop; tab <= kTabPointers; ++tab) {
    if (tab == kTabExplorer) continue;
    owned.push_back(std::make_unique<ui::ListBoxIcons>());
    owned.back()->Create(host, 100 + tab, 0, 0, 300, 300);
    lists[static_cast<size_t>(tab)] = owned.back().get();
  }
  const auto catalogue = Add_Icons(env, lists);
  IconApplyOptions options;
  options.settingsTreeBuilt = true;
  options.bitmapThumbnail = false;
  std::vector<std::string> keys;
  for (const Step& s : BuildIconApplyPlan(env, catalogue, lists, options))
    if (!s.key.empty() && std::find(keys.begin(), keys.end(), s.key) == keys.end()) keys.push_back(s.key);
  for (const Step& s : BitmapThumbnailSteps({true, false, true, ""}))
    if (std::find(keys.begin(), keys.end(), s.key) == keys.end()) keys.push_back(s.key);
  owned.clear();
  DestroyWindow(host);
  return keys;
}

class SettingsEndToEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    modRegistry::SaveDword(kSettingsKey, "Active Tab", kTabDesktop);
    modRegistry::SaveDword(kSettingsKey, "Positions", 0);
    // The icon-cache rebuild puts the size back as it found it.
    modRegistry::SaveString(kWindowMetricsKey, "Shell Icon Size", "32");
  }
  vxtest::SettingsScope scope;
  vxtest::KeySnapshot icons{IconStageKeys()};
};

const std::string kPrinters = "Printers.{2227A280-3AEA-1069-A2DE-08002B30309D}";
const std::string kPanel = "Control Panel.{21EC2020-3AEA-1069-A2DD-08002B30309D}";
constexpr const char* kVerb = "HKEY_CLASSES_ROOT\\CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\Shell\\VX";

TEST_F(SettingsEndToEnd, RestoreAllSettingsThenApplyWritesTheRestoreValues) {
  const std::string one("\1\0\0\0", 4), zero(4, '\0');
  struct Text {
    const char* name, *before, *after;
  } texts[] = {{"DoubleClickWidth", "9", "4"}, {"DoubleClickHeight", "9", "4"}, {"DragWidth", "7", "2"},
               {"DragHeight", "7", "2"},       {"MenuShowDelay", "100", "400"}, {"WallpaperOriginX", "5", "0"},
               {"WallpaperOriginY", "6", "0"}, {"CursorBlinkRate", "65535", "500"}, {"FontSmoothing", "1", "0"},
               {"DragFullWindows", "0", "1"},  {"WallpaperStyle", "2", "0"}};
  for (const Text& t : texts) modRegistry::SaveString(kDesktopKey, t.name, t.before);
  modRegistry::SaveString(kMouseKey, "DoubleClickSpeed", "700");
  modRegistry::SaveString(kSoundKey, "Beep", "No");
  modRegistry::SaveString(kWindowMetricsKey, "MinAnimate", "0");
  modRegistry::SaveString(kWindowMetricsKey, "IconTitleWrap", "0");
  vxtest::WriteRaw(kExplorerKey, "link", REG_BINARY, zero);
  modRegistry::DeleteValue(kPoliciesKey, "NoSaveSettings");
  for (const char* name : {"NoDesktop", "NoRun", "NoClose"}) modRegistry::SaveDword(kPoliciesKey, name, 1);
  modRegistry::SaveDword(kPoliciesKey, "NoNetHood", 999);
  modRegistry::SaveString(std::string(kVerb) + "\\Command", "", "x");
  CreateDirectoryA(scope.Cascade(kPrinters).c_str(), nullptr);

  Program p;
  ASSERT_NE(p.main, nullptr);
  p.Command(IDM_TOOLS_RESTORE_SETTINGS);
  HWND prompt = p.Prompt();
  ASSERT_NE(prompt, nullptr);
  EXPECT_NE(DialogText(prompt).find(" system settings will return them to Microsoft setup defaults."), std::string::npos);
  Program::Press(prompt, "OK");
  ASSERT_TRUE(p.ApplyEnabled());
  EXPECT_TRUE(IsWindowVisible(p.tree));  // the Shell tab came to the front
  // Nothing is written before Apply.
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "DoubleClickWidth"), "9");
  const std::vector<std::string> asked = p.ApplyAndAnswer();
  EXPECT_LE(asked.size(), 1u);  // the rebuild notice, unless it was switched off; no failure, no "Error"

  for (const Text& t : texts) EXPECT_EQ(modRegistry::GetString(kDesktopKey, t.name), t.after) << t.name;
  EXPECT_EQ(modRegistry::GetString(kMouseKey, "DoubleClickSpeed"), "500");
  EXPECT_EQ(modRegistry::GetString(kMouseKey, "SwapMouseButtons"), "0");
  EXPECT_EQ(modRegistry::GetString(kSoundKey, "Beep"), "Yes");
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "MinAnimate"), "1");
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "IconTitleWrap"), "1");
  EXPECT_EQ(modRegistry::GetString(kWindowMetricsKey, "Shell Icon BPP"), "4");
  EXPECT_FALSE(vxtest::ValueExists(kExplorerKey, "link"));             // prefix on: the value goes
  EXPECT_EQ(modRegistry::GetBinary(kPoliciesKey, "NoSaveSettings"), zero);  // save on: binary-zero
  for (const char* name : {"NoDesktop", "NoRun", "NoClose", "NoNetHood", "NoDrives", "NoFind"})
    EXPECT_EQ(modRegistry::GetDword(kPoliciesKey, name), 0) << name;
  EXPECT_EQ(modRegistry::GetDword(kNetworkPoliciesKey, "NoEntireNetwork"), 0);
  EXPECT_FALSE(vxtest::KeyExists(kVerb));
  EXPECT_NE(modRegistry::GetDword(kSettingsKey, "Active Tab"), 0);
  // The delay was not clicked and stays so; the cascading menus are as they were.
  EXPECT_NE(GetFileAttributesA(scope.Cascade(kPrinters).c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetFileAttributesA(scope.Cascade(kPanel).c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_FALSE(IsWindowEnabled(p.apply));
  EXPECT_TRUE(p.Close());
}

TEST_F(SettingsEndToEnd, WithTheTabNeverShownApplyWritesNoSetting) {
  std::vector<std::pair<std::string, modRegistry::KeyTree>> before;
  for (const std::string& key : SettingsKeys())  // but the document icons and preferences, the icon stage's
    if (key.find("Paint.Picture") == std::string::npos && key != kSettingsKey) {
      before.emplace_back(key, modRegistry::KeyTree{});
      modRegistry::ReadTree(key, before.back().second);
    }
  Program p;
  ASSERT_NE(p.main, nullptr);
  DWORD_PTR ignored = 0;
  SendMessageTimeoutA(GetDlgItem(p.pane, IDC_DEFAULT), BM_CLICK, 0, 0, SMTO_BLOCK, 10000, &ignored);
  ASSERT_TRUE(IsWindowEnabled(p.apply));
  p.ApplyAndAnswer();
  EXPECT_FALSE(IsWindowEnabled(p.apply));
  for (const auto& [key, tree] : before) {
    modRegistry::KeyTree now;
    modRegistry::ReadTree(key, now);
    EXPECT_TRUE(now == tree) << key;
  }
  EXPECT_TRUE(p.Close());
}

TEST_F(SettingsEndToEnd, NotePadAnsweredCancelStaysOff) {
  vxtest::DeleteTree("HKEY_CLASSES_ROOT\\*\\Shell\\Notepad");
  modRegistry::SaveDword(kSettingsKey, "Active Tab", kTabShell);
  modRegistry::SaveString(kSettingsKey, "Selected", "Note Pad");
  Program p;
  ASSERT_NE(p.main, nullptr);
  ASSERT_TRUE(IsWindowVisible(p.tree));
  PostMessageA(p.tree, WM_KEYDOWN, VK_SPACE, 0);
  HWND prompt = p.Prompt();
  ASSERT_NE(prompt, nullptr);
  EXPECT_NE(DialogText(prompt).find("Adding Notepad to all files causes conflicts"), std::string::npos);
  Program::Press(prompt, "Cancel");
  EXPECT_FALSE(IsWindowEnabled(p.apply));
  // Once more, answered OK: the toggle goes through and Apply writes the verb.
  PostMessageA(p.tree, WM_KEYDOWN, VK_SPACE, 0);
  prompt = p.Prompt();
  ASSERT_NE(prompt, nullptr);
  Program::Press(prompt, "OK");
  ASSERT_TRUE(p.ApplyEnabled());
  p.ApplyAndAnswer();
  EXPECT_EQ(modRegistry::GetString("HKEY_CLASSES_ROOT\\*\\Shell\\Notepad\\Command", ""), "NOTEPAD.EXE \"%1\"");
  EXPECT_EQ(modRegistry::GetString("HKEY_CLASSES_ROOT\\*\\Shell\\Notepad", ""), "&Notepad");
  EXPECT_TRUE(p.Close());
  vxtest::DeleteTree("HKEY_CLASSES_ROOT\\*\\Shell\\Notepad");
}

TEST_F(SettingsEndToEnd, RestoreAllPointersThenApplyWritesFifteenEmptyValues) {
  modRegistry::SaveString(kCursorsKey, "Arrow", "C:\\x.cur");
  Program p;
  ASSERT_NE(p.main, nullptr);
  p.Command(IDM_TOOLS_RESTORE_POINTERS);
  HWND prompt = p.Prompt();
  ASSERT_NE(prompt, nullptr);
  EXPECT_NE(DialogText(prompt).find(" pointers will return them to Microsoft setup defaults."), std::string::npos);
  Program::Press(prompt, "OK");
  ASSERT_TRUE(p.ApplyEnabled());
  EXPECT_EQ(modRegistry::GetString(kCursorsKey, "Arrow"), "C:\\x.cur");
  p.ApplyAndAnswer();
  for (const char* name : {"Arrow", "Help", "AppStarting", "Wait", "Crosshair", "IBeam", "NWPEN", "No", "SizeNS",
                           "SizeWE", "SizeNWSE", "SizeNESW", "SizeAll", "UpArrow", "Hand"})
    EXPECT_EQ(modRegistry::GetString(kCursorsKey, name), "") << name;
  EXPECT_TRUE(p.Close());
}

}  // namespace
