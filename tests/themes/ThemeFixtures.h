#pragma once
// Shared by the theme tests: a scratch folder for theme files, files written byte for byte, and lists
// that record what a load gave them.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
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
  void Clear() { std::error_code ignored; std::filesystem::remove_all(path_, ignored); }
  std::string path_;
};

// The profile calls cache files they have read: flush that cache before a file changes or is read.
inline void WriteBytes(const std::string& path, const std::string& bytes) {
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadBytes(const std::string& path) {
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
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

  struct Change_ { int tab; std::string key, location; };
  std::map<std::pair<int, std::string>, std::string> items;
  std::vector<Change_> changes;
  std::vector<int> refreshed;
};

}  // namespace vxtest
