#pragma once
// Shared by the icon tests: environments per edition, and the registry values the catalogue reads
// from keys the system owns, saved and cleared for the life of a test.
#include <windows.h>

#include <string>
#include <vector>

#include "SavedValues.h"
#include "icons/Catalogue.h"
#include "system/Environment.h"
#include "ui/win.h"

namespace vxtest {

inline std::string WindowsFolder() {
  char buf[MAX_PATH];
  UINT n = GetWindowsDirectoryA(buf, MAX_PATH);
  return std::string(buf, n);
}

inline std::string SystemFolder() {
  char buf[MAX_PATH];
  UINT n = GetSystemDirectoryA(buf, MAX_PATH);
  return std::string(buf, n);
}

// An environment on this machine's real folders (so shell32.dll counts its icons) for any edition.
inline vx::Environment Env(const std::string& edition, const std::string& ieVersion = "Error",
                           bool startMenuOrder = false) {
  return vx::MakeEnvironment(edition, WindowsFolder(), SystemFolder(), ieVersion, startMenuOrder,
                             ui::ModulePath());
}

inline const std::vector<std::string> kExtensions = {".bmp", ".ini", ".gif", ".html", ".jpeg", ".mmm",
                                                     ".mpeg", ".bat", ".mid", ".rtf", ".txt", ".avi",
                                                     ".wav", ".wri", ".zip"};
inline const std::vector<std::string> kCursorRoles = {"Arrow",  "Help",   "AppStarting", "Wait",    "Crosshair",
                                                      "IBeam",  "NWPEN",  "No",          "SizeNS",  "SizeWE",
                                                      "SizeNWSE", "SizeNESW", "SizeAll", "UpArrow", "Hand"};

// Every value of a system-owned key that the catalogue reads: class names and display names, the
// "\ShellFolder" tests, document classes, the cursor scheme and the shell's icon overrides. All of
// them start out missing.
inline std::vector<SavedValues::Value> CatalogueValues() {
  std::vector<SavedValues::Value> v;
  const std::string clsid = "HKEY_CLASSES_ROOT\\CLSID\\", user = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\";
  for (const char* id : {"{20D04FE0-3AEA-1069-A2D8-08002B30309D}", "{450D8FBA-AD25-11D0-98A8-0800361B1103}",
                         "{208D2C60-3AEA-1069-A2D7-08002B30309D}", "{645FF040-5081-101B-9F08-00AA002F954E}"}) {
    v.push_back({clsid + id, ""});
    v.push_back({user + id, ""});
  }
  for (const char* id : {"{FBF23B42-E3F0-101B-8488-00AA003E56F8}", "{871C5380-42A0-1069-A2EA-08002B30309D}",
                         "{00020D75-0000-0000-C000-000000000046}", "{85BBD920-42A0-1069-A2E4-08002B30309D}"})
    v.push_back({clsid + id, ""});
  for (const char* id : {"{1A9BA3A0-143A-11CF-8350-444553540000}", "{FF393560-C2A7-11CF-BFF4-444553540000}",
                         "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}"})
    v.push_back({clsid + id + "\\ShellFolder", ""});
  for (const auto& ext : kExtensions) v.push_back({"HKEY_CLASSES_ROOT\\" + ext, ""});
  for (const auto& role : kCursorRoles) v.push_back({vx::kCursorsKey, role});
  for (int n : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 18, 19, 20, 21, 22, 23, 24, 25, 27, 28, 29, 34,
                35, 36, 37, 40, 42, 43, 44})
    v.push_back({vx::kShellIconsKey, std::to_string(n)});
  return v;
}

// A file outside the test's own folders (such as C:\autorun.inf) that a test may write: it is moved
// aside for the life of the scope and then put back, or removed when there was none.
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
  SavedFile(const SavedFile&) = delete;
  SavedFile& operator=(const SavedFile&) = delete;

 private:
  std::string path_, aside_;
};

}  // namespace vxtest
