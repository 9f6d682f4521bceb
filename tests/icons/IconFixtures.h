#pragma once
// Shared by the icon tests: environments on this machine's folders, the system-owned registry values the
// catalogue reads (cleared for a test, put back after it), real icon lists and a host for the edit commands.
#include <windows.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "icons/Catalogue.h"
#include "icons/IconEdits.h"
#include "registry/modRegistry.h"
#include "support/KeySnapshot.h"
#include "support/RegistryScope.h"
#include "system/Environment.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace vxtest {

inline std::string WindowsFolder() { char b[MAX_PATH]; return std::string(b, GetWindowsDirectoryA(b, MAX_PATH)); }
inline std::string SystemFolder() { char b[MAX_PATH]; return std::string(b, GetSystemDirectoryA(b, MAX_PATH)); }
inline std::string Shell32() { return SystemFolder() + "\\shell32.dll"; }

// Real folders, so shell32.dll counts its icons.
inline vx::Environment Env(const std::string& edition, const std::string& ie = "Error", bool order = false) {
  return vx::MakeEnvironment(edition, WindowsFolder(), SystemFolder(), ie, order, ui::ModulePath());
}

// The system-owned keys the catalogue reads, saved and put back after the test; what it reads there starts
// out missing: class and display names, "\ShellFolder", document classes, cursor scheme, icon overrides.
class CatalogueRegistry {
 public:
  CatalogueRegistry() : snapshot_(Keys()) {
    for (const std::string& k : Keys()) {
      if (k == vx::kCursorsKey || k == vx::kShellIconsKey) DeleteTree(k);
      modRegistry::DeleteValue(k, "");
      modRegistry::DeleteValue(k + "\\ShellFolder", "");
    }
  }

 private:
  static std::vector<std::string> Keys() {
    std::vector<std::string> keys = {vx::kCursorsKey, vx::kShellIconsKey};
    for (const char* id : {"{20D04FE0-3AEA-1069-A2D8-08002B30309D}", "{450D8FBA-AD25-11D0-98A8-0800361B1103}",
                           "{208D2C60-3AEA-1069-A2D7-08002B30309D}", "{645FF040-5081-101B-9F08-00AA002F954E}"})
      keys.push_back(std::string("HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\") + id);  // Windows 98's copies
    for (const std::string& key : std::vector<std::string>(keys.begin() + 2, keys.end()))
      keys.push_back("HKEY_CLASSES_ROOT" + key.substr(key.find("\\CLSID\\")));
    for (const char* id : {"{FBF23B42-E3F0-101B-8488-00AA003E56F8}", "{871C5380-42A0-1069-A2EA-08002B30309D}",
                           "{00020D75-0000-0000-C000-000000000046}", "{85BBD920-42A0-1069-A2E4-08002B30309D}",
                           "{FF393560-C2A7-11CF-BFF4-444553540000}", "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}",
                           "{1A9BA3A0-143A-11CF-8350-444553540000}"})  // the last three: "\ShellFolder" tests
      keys.push_back(std::string("HKEY_CLASSES_ROOT\\CLSID\\") + id);
    for (const char* ext : {".bmp", ".ini", ".gif", ".html", ".jpeg", ".mmm", ".mpeg", ".bat", ".mid", ".rtf",
                            ".txt", ".avi", ".wav", ".wri", ".zip"})
      keys.push_back(std::string("HKEY_CLASSES_ROOT\\") + ext);
    return keys;
  }
  KeySnapshot snapshot_;
};

// The icon lists of a hidden window, filled by Add_Icons as the main window fills them.
struct RealLists {
  explicit RealLists(const vx::Environment& env) {
    window.Create("VxIconTestHost", 0, WS_OVERLAPPEDWINDOW, "", 0, 0, 400, 600, nullptr, nullptr);
    for (int t : {2, 3, 4, 5, 6, 7, 9}) {
      owned[t].Create(window.hwnd(), 100 + t, 0, 0, 300, 500);
      lists[t] = &owned[t];
    }
    catalogue = vx::Add_Icons(env, lists);
  }
  ui::Window window;
  std::array<ui::ListBoxIcons, 10> owned;  // destroyed before their window
  vx::IconLists lists{};
  std::vector<vx::IconItem> catalogue;
};

// A file outside the test's own folders (such as C:\autorun.inf), moved aside for the scope's life.
class SavedFile {
 public:
  explicit SavedFile(std::string path) : path_(std::move(path)), aside_(path_ + ".vxtest") {
    MoveFileExA(path_.c_str(), aside_.c_str(), MOVEFILE_REPLACE_EXISTING);
  }
  ~SavedFile() {
    SetFileAttributesA(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA(path_.c_str());
    MoveFileA(aside_.c_str(), path_.c_str());
  }

 private:
  std::string path_, aside_;
};

// The main window as the edit commands see it: what it would show, and the calls whose order matters.
class RecordingHost : public vx::EditHost {
 public:
  explicit RecordingHost(vx::Environment e) : env(std::move(e)) {}
  HWND Owner() override { return real ? real->window.hwnd() : nullptr; }
  const vx::Environment& Env() override { return env; }
  const std::vector<vx::IconItem>& Catalogue() override { return real ? real->catalogue : none; }
  int CurrentTab() override { return tab; }
  ui::ListBoxIcons* List(int t) override { return real && t >= 0 && t < 10 ? real->lists[t] : nullptr; }
  std::string InfoBar() override { return info; }
  void SetInfoBar(const std::string& text) override { info = text; }
  void EnableDefault(bool on) override { defaultOn = on; }
  void EnableRename(bool on) override { renameOn = on; }
  void EnableApply() override { applyOn = true, log += "apply "; }
  void SetRebuildCachePending() override { pending = true; }
  std::string ExplorerPath() override { return path; }
  void RefreshFolderTree() override { log += "refresh "; }
  void FocusFolderTree() override { log += "focus "; }
  void lstbxExplorer_Click() override { log += "click "; }
  void RebuildIconCache() override { log += "rebuild "; }

  const vx::Environment env;
  std::unique_ptr<RealLists> real;
  const std::vector<vx::IconItem> none;
  int tab = vx::kTabExplorer;
  std::string path, info, log;
  std::optional<bool> defaultOn, renameOn;
  bool applyOn = false, pending = false;
};

}  // namespace vxtest
