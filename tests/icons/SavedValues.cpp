#include "SavedValues.h"

#include "registry/modRegistry.h"
#include "support/RegistryScope.h"

namespace vxtest {
namespace {

std::string TopmostMissing(const std::string& keyPath) {
  std::string missing;
  std::string path = keyPath;
  while (!KeyExists(path)) {
    missing = path;
    const size_t cut = path.rfind('\\');
    if (cut == std::string::npos) break;
    path.resize(cut);
  }
  return missing;
}

}  // namespace

SavedValues::SavedValues(std::vector<Value> values) {
  for (auto& v : values) {
    Saved s;
    s.value = v;
    DWORD type = 0;
    s.existed = ReadRaw(v.first, v.second, type, s.bytes);
    s.type = type;
    s.createdRoot = TopmostMissing(v.first);
    if (s.existed) modRegistry::DeleteValue(v.first, v.second);
    saved_.push_back(std::move(s));
  }
}

SavedValues::~SavedValues() {
  for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
    if (!it->createdRoot.empty()) {
      DeleteTree(it->createdRoot);
    } else if (it->existed) {
      WriteRaw(it->value.first, it->value.second, it->type, it->bytes);
    } else {
      modRegistry::DeleteValue(it->value.first, it->value.second);
    }
  }
}

}  // namespace vxtest
