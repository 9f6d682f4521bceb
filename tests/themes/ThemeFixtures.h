#pragma once
// Shared by the theme tests: a scratch folder for theme files, files written byte for byte, and lists
// that record what a load gave them.
#include <windows.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "icons/Items.h"
#include "themes/Themes.h"

namespace vxtest {

// A folder of its own under the temporary folder, emptied and removed at the end.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& name) {
    char temp[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, temp);
    path_ = std::string(temp) + name;
    if (path_.back() == '\\') path_.pop_back();
    Clear();
    CreateDirectoryA(path_.c_str(), nullptr);
  }
  ~ScratchFolder() { Clear(); }
  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "\\" + name; }

 private:
  void Clear() {
    WIN32_FIND_DATAA d;
    HANDLE h = FindFirstFileA((path_ + "\\*").c_str(), &d);
    if (h != INVALID_HANDLE_VALUE) {
      do {
        const std::string n = d.cFileName;
        if (n != "." && n != "..") DeleteFileA((path_ + "\\" + n).c_str());
      } while (FindNextFileA(h, &d));
      FindClose(h);
    }
    RemoveDirectoryA(path_.c_str());
  }
  std::string path_;
};

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  // The profile calls cache files they have read: flush that cache before the file changes under them.
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
  HANDLE h = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  WriteFile(h, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(h);
}

inline std::string ReadBytes(const std::string& path) {
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
  std::string bytes;
  HANDLE h = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return bytes;
  char buffer[4096];
  DWORD got = 0;
  while (ReadFile(h, buffer, sizeof buffer, &got, nullptr) && got > 0) bytes.append(buffer, got);
  CloseHandle(h);
  return bytes;
}

// Lists holding every listed item of the table with a location of its own, recording each change.
class RecordingLists : public vx::ThemeLists {
 public:
  explicit RecordingLists(const vx::Environment& env) {
    for (const vx::ItemRow& r : vx::ItemTable())
      if (vx::Holds(r.listed, env)) items[{r.tab, r.key}] = "C:\\Before\\" + std::string(r.key) + ".ico,1";
  }
  std::string ItemFullPath(int tab, const std::string& key) const override {
    auto it = items.find({tab, key});
    return it == items.end() ? "" : it->second;
  }
  bool Change(int tab, const std::string& key, const std::string& location) override {
    auto it = items.find({tab, key});
    if (it == items.end()) return false;
    changes.push_back({tab, key, location});
    it->second = location;
    return true;
  }
  void ListRefresh(int tab) override { refreshed.push_back(tab); }

  struct Change_ {
    int tab;
    std::string key, location;
  };
  std::map<std::pair<int, std::string>, std::string> items;
  std::vector<Change_> changes;
  std::vector<int> refreshed;
};

}  // namespace vxtest
