// Folder and drive icons on real folders under C:\VXFOLDERS and on the real root C:\, with a scripted
// picker and prompts, through a host that shows in its info bar what the shell would read from disk.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "IconFixtures.h"
#include "icons/FolderIcons.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"

namespace {

const std::string kBase = "C:\\VXFOLDERS";  // so that one folder path is all upper case
const std::string kMixed = kBase + "\\Some Folder", kUpper = kBase + "\\ALL UPPER";

std::string Profile(const std::string& file, const char* section, const char* key) {
  char buf[MAX_PATH] = "";
  GetPrivateProfileStringA(section, key, "", buf, MAX_PATH, file.c_str());
  return buf;
}

// The icon a shell shows for a path: the root's autorun.inf, or a system folder's desktop.ini.
std::string ShellView(const std::string& path) {
  std::string location;
  if (path.size() == 3) {
    location = Profile(path + "autorun.inf", "AUTORUN", "Icon");
  } else if (GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_SYSTEM) {
    const std::string ini = path + "\\desktop.ini", file = Profile(ini, ".ShellClassInfo", "IconFile");
    if (!file.empty()) location = file + "," + Profile(ini, ".ShellClassInfo", "IconIndex");
  }
  return location.empty() ? "Windows Default Icon" : location;
}

class ExplorerHost : public vx::EditHost {
 public:
  HWND Owner() override { return nullptr; }
  const vx::Environment& Env() override { return env; }
  const std::vector<vx::IconItem>& Catalogue() override { return catalogue; }
  int CurrentTab() override { return vx::kTabExplorer; }
  ui::ListBoxIcons* List(int) override { return nullptr; }
  std::string InfoBar() override { return info; }
  void SetInfoBar(const std::string& text) override { info = text; }
  void EnableDefault(bool) override {}
  void EnableRename(bool) override {}
  void EnableApply() override { log += "apply "; }
  void SetRebuildCachePending() override { pending = true; }
  std::string ExplorerPath() override { return path; }
  void RefreshFolderTree() override { log += "refresh "; }
  void FocusFolderTree() override { log += "focus "; }
  void lstbxExplorer_Click() override {
    log += "click ";
    info = ShellView(path);
  }
  void RebuildIconCache() override {
    log += "rebuild ";
    vx::RebuildIconCache(env, pending, [this] { RefreshFolderTree(); });
  }

  // Selects a folder in the tree, then forgets every mark.
  void Select(const std::string& p) {
    path = p;
    lstbxExplorer_Click();
    log.clear();
    pending = false;
  }

  vx::Environment env = vxtest::Env("Win98");
  std::vector<vx::IconItem> catalogue;
  std::string path, info, log;
  bool pending = false;
};

// Counts the icon-metrics broadcasts that a cache rebuild sends to every top-level window.
int g_metricsHeard = 0;
LRESULT CALLBACK Watcher(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  if (msg == WM_SETTINGCHANGE && wp == SPI_SETICONMETRICS) ++g_metricsHeard;
  return DefWindowProcA(hwnd, msg, wp, lp);
}

// One call of the shell's file operation as "owner function flags: from > to"; a name list is shown up
// to its empty entry, with "|" between names.
std::string Names(const char* list) {
  std::string names;
  for (const char* p = list; *p; p += strlen(p) + 1) {
    if (!names.empty()) names += '|';
    names += p;
  }
  return names;
}

class FolderIcons : public ::testing::Test {
 protected:
  FolderIcons() {
    // Under Wine a rename that only changes the case is refused, so the calls are what can be seen.
    realOperation = vx::SetShellFileOperation([this](SHFILEOPSTRUCTA& op) {
      host.log += "rename ";
      renames.push_back(std::to_string(reinterpret_cast<uintptr_t>(op.hwnd)) + " " + std::to_string(op.wFunc) + " " +
                        std::to_string(op.fFlags) + ": " + Names(op.pFrom) + " > " + Names(op.pTo));
      return 0;
    });
    for (const auto& dir : {kMixed, kUpper}) RemoveFolder(dir);
    CreateDirectoryA(kBase.c_str(), nullptr);
    for (const auto& dir : {kMixed, kUpper}) CreateDirectoryA(dir.c_str(), nullptr);
    WNDCLASSA wc{};
    wc.lpfnWndProc = Watcher;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "VexillorFolderIconsWatcher";
    RegisterClassA(&wc);
    watcher = CreateWindowExA(0, wc.lpszClassName, "", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                              wc.hInstance, nullptr);
    iconSizeSaved = vxtest::ReadRaw(kMetrics, "Shell Icon Size", iconSizeType, iconSize);
    g_metricsHeard = 0;
  }
  ~FolderIcons() override {
    vx::SetShellFileOperation(realOperation);
    DestroyWindow(watcher);
    if (iconSizeSaved) vxtest::WriteRaw(kMetrics, "Shell Icon Size", iconSizeType, iconSize);
    else modRegistry::DeleteValue(kMetrics, "Shell Icon Size");
    for (const auto& dir : {kMixed, kUpper}) RemoveFolder(dir);
    RemoveDirectoryA(kBase.c_str());
  }
  static void RemoveFolder(const std::string& dir) {
    SetFileAttributesA((dir + "\\desktop.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA((dir + "\\desktop.ini").c_str());
    SetFileAttributesA(dir.c_str(), FILE_ATTRIBUTE_NORMAL);
    RemoveDirectoryA(dir.c_str());
  }
  // Chooses file,index in the picker and presses Change.
  void Change(const std::string& file, int16_t index) {
    seam.iconChoices = {{true, file, index}};
    vx::cmdChange_Click(host);
  }

  const std::string kMetrics = vx::kWindowMetricsKey;
  const vxtest::SavedFile autorun{"C:\\autorun.inf"};
  vxtest::RegistryScope scope{{vxtest::kProgramKey}};
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  ExplorerHost host;
  std::vector<std::string> renames;
  vx::ShellFileOperation realOperation;
  HWND watcher = nullptr;
  bool iconSizeSaved = false;
  DWORD iconSizeType = 0;
  std::string iconSize;
};

TEST_F(FolderIcons, ChangeWritesTheFoldersDesktopIniAtOnce) {
  for (const auto& dir : {kMixed, kUpper}) {
    SCOPED_TRACE(dir);
    host.Select(dir);
    EXPECT_EQ(host.info, "Windows Default Icon");
    Change("C:\\icons\\mine.dll", 7);
    const std::string ini = dir + "\\desktop.ini";
    EXPECT_EQ(Profile(ini, ".ShellClassInfo", "IconFile"), "C:\\icons\\mine.dll");
    EXPECT_EQ(Profile(ini, ".ShellClassInfo", "IconIndex"), "7");
    EXPECT_EQ(GetFileAttributesA(dir.c_str()), static_cast<DWORD>(FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY));
    EXPECT_EQ(GetFileAttributesA(ini.c_str()), static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
    EXPECT_EQ(host.info, "C:\\icons\\mine.dll,7");
    EXPECT_EQ(host.log, "rename rename click refresh ");  // no Apply, no cache rebuild
    EXPECT_TRUE(host.pending);
  }
  EXPECT_TRUE(seam.prompts.empty());
}

TEST_F(FolderIcons, ChangeForTheRootWritesAutorunInfAndRebuildsTheCache) {
  host.Select("C:\\");
  Change("C:\\icons\\drive.ico", 0);
  EXPECT_EQ(Profile("C:\\autorun.inf", "AUTORUN", "Icon"), "C:\\icons\\drive.ico,0");
  EXPECT_EQ(host.log, "rebuild refresh refresh ");
  EXPECT_EQ(g_metricsHeard, 2);  // size bumped and put back
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message.substr(0, 49), "Vexillor has notified Windows 98 of your changes.");
  EXPECT_FALSE(host.pending);  // the notice clears it

  // A second choice replaces the key and keeps what else the file holds.
  WritePrivateProfileStringA("AUTORUN", "open", "setup.exe", "C:\\autorun.inf");
  host.Select("C:\\");
  Change("C:\\icons\\drive.ico", -3);
  EXPECT_EQ(Profile("C:\\autorun.inf", "AUTORUN", "Icon"), "C:\\icons\\drive.ico,-3");
  EXPECT_EQ(Profile("C:\\autorun.inf", "AUTORUN", "open"), "setup.exe");
}

TEST_F(FolderIcons, DefaultIconRestoresOnlyWhatTheUserConfirms) {
  const struct {
    std::string path;
    int answer;  // slot: 0 Cancel, 1 OK
    std::string prompt, infoAfter, log;
    bool fileLeft;
  } cases[] = {
      {kMixed, 0, "Restoring this icon will remove the 'desktop.ini' file from the selected folder.\n\n"
                  "Are you sure you want to continue?", "C:\\icons\\mine.dll,2", "click focus refresh ", true},
      {kUpper, 1, "Restoring this icon will remove the 'desktop.ini' file from the selected folder.\n\n"
                  "Are you sure you want to continue?", "Windows Default Icon", "rename rename click focus refresh ", false},
      {"C:\\", 0, "Restoring this icon will remove the 'autorun.inf' file from the selected hard drive.\n\n"
                  "Are you sure you want to continue?", "C:\\icons\\mine.dll,2", "click focus refresh ", true},
      {"C:\\", 1, "Restoring this icon will remove the 'autorun.inf' file from the selected hard drive.\n\n"
                  "Are you sure you want to continue?", "Windows Default Icon",
       "rebuild refresh click focus refresh ", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path + " answer " + std::to_string(c.answer));
    host.Select(c.path);
    Change("C:\\icons\\mine.dll", 2);
    host.Select(c.path);  // a drive's change leaves the info bar as it was
    ASSERT_EQ(host.info, "C:\\icons\\mine.dll,2");
    seam.prompts.clear();
    seam.promptAnswers = {{c.answer, false}};
    vx::cmdDefault_Click(host);
    ASSERT_GE(seam.prompts.size(), 1u);
    EXPECT_EQ(seam.prompts[0].message, c.prompt);
    EXPECT_EQ(seam.prompts[0].icon, "32514");
    EXPECT_EQ(host.info, c.infoAfter);
    EXPECT_EQ(host.log, c.log);
    const std::string file = c.path.size() == 3 ? c.path + "autorun.inf" : c.path + "\\desktop.ini";
    EXPECT_EQ(GetFileAttributesA(file.c_str()) != INVALID_FILE_ATTRIBUTES, c.fileLeft);
    if (c.path.size() > 3) {
      EXPECT_EQ(GetFileAttributesA(c.path.c_str()),
                static_cast<DWORD>(c.fileLeft ? FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY
                                              : FILE_ATTRIBUTE_DIRECTORY));
    }
  }
}

TEST_F(FolderIcons, DefaultIconOnAnUncustomisedSelectionAsksForACustomisedOne) {
  for (const auto& path : {kMixed, std::string("C:\\")}) {
    host.Select(path);
    seam.prompts.clear();
    vx::cmdDefault_Click(host);
    ASSERT_EQ(seam.prompts.size(), 1u);
    EXPECT_EQ(seam.prompts[0].message,
              "You must select a customised folder or hard drive before it can be restored to the default icon.");
    EXPECT_EQ(seam.prompts[0].icon, "32516");
    EXPECT_EQ(host.log, "");  // nothing touched, not even the info bar
  }
}

TEST_F(FolderIcons, ShellFileRefreshRenamesToTheOtherCaseAndBack) {
  const struct { std::string path, other; } cases[] = {
      {kMixed, "C:\\VXFOLDERS\\SOME FOLDER"},
      {kUpper, "c:\\vxfolders\\all upper"},
      {"C:\\VXFOLDERS\\ALL UPPEr", "C:\\VXFOLDERS\\ALL UPPER"},
      {"C:\\123", "c:\\123"},  // nothing to raise counts as all upper case
  };
  for (const auto& c : cases) {
    renames.clear();
    vx::ShellFileRefresh(reinterpret_cast<HWND>(0x1234), c.path);
    const std::vector<std::string> expected = {"4660 4 20: " + c.path + " > " + c.other,
                                               "4660 4 20: " + c.other + " > " + c.path};
    EXPECT_EQ(renames, expected);
  }
  // Through the real shell the names on disk stay exactly as they were.
  vx::SetShellFileOperation(realOperation);
  for (const auto& dir : {kMixed, kUpper}) {
    vx::ShellFileRefresh(nullptr, dir);
    WIN32_FIND_DATAA found;
    HANDLE f = FindFirstFileA(dir.c_str(), &found);
    ASSERT_NE(f, INVALID_HANDLE_VALUE);
    FindClose(f);
    EXPECT_EQ(kBase + "\\" + found.cFileName, dir);
  }
}

}  // namespace
