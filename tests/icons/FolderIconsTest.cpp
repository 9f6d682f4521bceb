// Folder and drive icons on real folders under C:\VXFOLDERS and the real root C:\, with scripted picker and prompts.
#include <gtest/gtest.h>

#include <cstring>

#include "IconFixtures.h"
#include "icons/FolderIcons.h"
#include "icons/Refresh.h"
#include "support/ScriptedSeam.h"

namespace {

const std::string kBase = "C:\\VXFOLDERS";  // so that one folder's path is all upper case
const std::string kMixed = kBase + "\\Some Folder", kUpper = kBase + "\\ALL UPPER";
const std::string kRoot = "C:\\", kMine = "C:\\icons\\mine.dll";

std::string Removes(const std::string& file, const std::string& from) {
  return "Restoring this icon will remove the '" + file + "' file from the selected " + from +
         ".\n\nAre you sure you want to continue?";
}

std::string Profile(const std::string& file, const char* section, const char* key) {
  char buf[MAX_PATH] = "";
  GetPrivateProfileStringA(section, key, "", buf, MAX_PATH, file.c_str());
  return buf;
}

DWORD Attributes(const std::string& path) { return GetFileAttributesA(path.c_str()); }

// A name list up to its empty entry, "|" between names.
std::string Names(const char* list) {
  std::string names;
  for (const char* p = list; *p; p += strlen(p) + 1) names.append(names.empty() ? "" : "|").append(p);
  return names;
}

// The Explorer tab shows what the shell reads from disk, and a rebuild is the real one.
struct ExplorerHost : vxtest::RecordingHost {
  ExplorerHost() : RecordingHost(vxtest::Env("Win98")) {}
  void lstbxExplorer_Click() override {
    RecordingHost::lstbxExplorer_Click();
    info = vx::FolderIconInfo(path, env.systemFolder);
  }
  void RebuildIconCache() override {
    RecordingHost::RebuildIconCache();
    vx::RunFlags flags{.rebuildCachePending = pending};
    vx::RebuildIconCache(env, flags, [this] { RefreshFolderTree(); });
    pending = flags.rebuildCachePending;
  }
};

class FolderIcons : public ::testing::Test {
 protected:
  FolderIcons() {
    // Under Wine a rename that only changes the letter case is refused, so the calls are what is seen.
    realOperation = vx::SetShellFileOperation([this](SHFILEOPSTRUCTA& op) {
      host.log += "rename ";
      renames.push_back(std::to_string(reinterpret_cast<uintptr_t>(op.hwnd)) + " " + std::to_string(op.wFunc) +
                        " " + std::to_string(op.fFlags) + ": " + Names(op.pFrom) + " > " + Names(op.pTo));
      return 0;
    });
    for (const auto& dir : {kBase, kMixed, kUpper}) CreateDirectoryA(dir.c_str(), nullptr);
  }
  ~FolderIcons() override {
    vx::SetShellFileOperation(realOperation);
    for (const auto& dir : {kMixed, kUpper}) {
      SetFileAttributesA((dir + "\\desktop.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileA((dir + "\\desktop.ini").c_str());
      SetFileAttributesA(dir.c_str(), FILE_ATTRIBUTE_NORMAL);
      RemoveDirectoryA(dir.c_str());
    }
    RemoveDirectoryA(kBase.c_str());
  }
  // Selects path in the tree, chooses file,index in the picker and presses Change.
  void Change(const std::string& path, const std::string& file, int16_t index) {
    host.path = path;
    host.lstbxExplorer_Click();
    host.log.clear();
    seam.iconChoices = {{true, file, index}};
    vx::cmdChange_Click(host);
  }

  const vxtest::SavedFile autorun{"C:\\autorun.inf"};
  vxtest::KeySnapshot metrics{{vx::kWindowMetricsKey}};  // the cache rebuild writes the icon size
  vxtest::RegistryScope scope{{vxtest::kProgramKey}};
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  ExplorerHost host;
  std::vector<std::string> renames;
  vx::ShellFileOperation realOperation;
};

// A folder's choice goes to its desktop.ini at once, without Apply or rebuild; a drive's to autorun.inf (the rest
// kept), with a rebuild whose notice clears the mark and stays away once "Do not show..." is ticked.
TEST_F(FolderIcons, ChangeWritesDesktopIniOrAutorunInfAtOnce) {
  Change(kUpper, kMine, 7);
  const std::string ini = kUpper + "\\desktop.ini";
  EXPECT_EQ(Profile(ini, ".ShellClassInfo", "IconFile") + "," + Profile(ini, ".ShellClassInfo", "IconIndex"),
            kMine + ",7");
  EXPECT_EQ(Attributes(kUpper), static_cast<DWORD>(FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY));
  EXPECT_EQ(Attributes(ini), static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
  EXPECT_EQ(host.info, kMine + ",7");
  EXPECT_EQ(host.log, "rename rename click refresh ");
  EXPECT_TRUE(host.pending && seam.prompts.empty());

  WritePrivateProfileStringA("AUTORUN", "open", "setup.exe", "C:\\autorun.inf");
  seam.promptAnswers = {{1, true}};
  for (int16_t index : {-3, 4}) {
    Change(kRoot, kMine, index);
    EXPECT_EQ(Profile("C:\\autorun.inf", "AUTORUN", "Icon"), kMine + "," + std::to_string(index));
    EXPECT_EQ(host.log, "rebuild refresh refresh ");
    EXPECT_FALSE(host.pending);
  }
  EXPECT_EQ(Profile("C:\\autorun.inf", "AUTORUN", "open"), "setup.exe");
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message.substr(0, 49), "Vexillor has notified Windows 98 of your changes.");
}

// Answer -1: the selection has no icon of its own, so nothing is touched, not even the info bar.
TEST_F(FolderIcons, DefaultIconRestoresOnlyWhatTheUserConfirms) {
  const std::string notCustomised =
      "You must select a customised folder or hard drive before it can be restored to the default icon.";
  const struct { std::string path, file, prompt; int answer; std::string log; } cases[] = {  // 0 Cancel, 1 OK
      {kMixed, kMixed + "\\desktop.ini", Removes("desktop.ini", "folder"), 0, "click focus refresh "},
      {kUpper, kUpper + "\\desktop.ini", Removes("desktop.ini", "folder"), 1, "rename rename click focus refresh "},
      {kRoot, "C:\\autorun.inf", Removes("autorun.inf", "hard drive"), 1, "rebuild refresh click focus refresh "},
      {kMixed, "", notCustomised, -1, ""}, {kRoot, "", notCustomised, -1, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path + " answer " + std::to_string(c.answer));
    host.path = c.path;
    host.info = "Windows Default Icon";
    if (c.answer >= 0) {
      Change(c.path, kMine, 2);
      host.lstbxExplorer_Click();  // a drive's change leaves the info bar as it was
    }
    host.log.clear();
    seam.prompts.clear();
    seam.promptAnswers = {{c.answer, false}};
    vx::cmdDefault_Click(host);
    ASSERT_GE(seam.prompts.size(), 1u);
    EXPECT_EQ(seam.prompts[0].message + "|" + seam.prompts[0].icon, c.prompt + (c.answer < 0 ? "|32516" : "|32514"));
    EXPECT_EQ(host.info, c.answer == 0 ? kMine + ",2" : "Windows Default Icon");
    EXPECT_EQ(host.log, c.log);
    if (c.answer < 0) continue;
    EXPECT_EQ(Attributes(c.file) == INVALID_FILE_ATTRIBUTES, c.answer == 1);
    if (c.path == kRoot) continue;
    EXPECT_EQ(Attributes(c.path), DWORD(FILE_ATTRIBUTE_DIRECTORY | (c.answer ? 0 : FILE_ATTRIBUTE_SYSTEM)));
  }
}

TEST_F(FolderIcons, ShellFileRefreshRenamesToTheOtherCaseAndBack) {
  const struct { std::string path, other; } cases[] = {  // nothing to raise counts as all upper case
      {kMixed, "C:\\VXFOLDERS\\SOME FOLDER"}, {kUpper, "c:\\vxfolders\\all upper"}, {"C:\\123", "c:\\123"}};
  for (const auto& c : cases) {
    renames.clear();
    vx::ShellFileRefresh(reinterpret_cast<HWND>(0x1234), c.path);
    EXPECT_EQ(renames, (std::vector<std::string>{"4660 4 20: " + c.path + " > " + c.other,
                                                 "4660 4 20: " + c.other + " > " + c.path}));
  }
}

}  // namespace
