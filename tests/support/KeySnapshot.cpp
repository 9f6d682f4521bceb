#include "support/KeySnapshot.h"

#include "apply/Executor.h"
#include "support/RegistryScope.h"

namespace vxtest {

KeySnapshot::KeySnapshot(std::vector<std::string> keyPaths) : paths_(std::move(keyPaths)) {
  for (const auto& p : paths_) {
    modRegistry::KeyTree tree;
    trees_.push_back(modRegistry::ReadTree(p, tree) ? std::optional(std::move(tree)) : std::nullopt);
  }
}

void KeySnapshot::Restore() {
  for (size_t i = 0; i < paths_.size(); ++i) {
    DeleteTree(paths_[i]);
    if (trees_[i]) modRegistry::WriteTree(paths_[i], *trees_[i]);
  }
}

std::vector<std::string> KeysNow(const std::vector<std::string>& keyPaths) {
  std::vector<std::string> v;
  for (const std::string& k : keyPaths) {
    modRegistry::KeyTree t;
    v.push_back(k + (modRegistry::ReadTree(k, t) ? " = " + vx::EncodeKeyTree(t) : " missing"));
  }
  return v;
}

}  // namespace vxtest
