#pragma once
// Whole key trees, put back exactly when the snapshot ends: tests may let the program write to keys
// the system owns (class keys, the shell's icon overrides) and leave no trace.
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "registry/modRegistry.h"

namespace vxtest {

class KeySnapshot {
 public:
  explicit KeySnapshot(std::vector<std::string> keyPaths);
  ~KeySnapshot() { Restore(); }
  KeySnapshot(const KeySnapshot&) = delete;
  KeySnapshot& operator=(const KeySnapshot&) = delete;
  void Restore();

 private:
  std::vector<std::string> paths_;
  std::vector<std::optional<modRegistry::KeyTree>> trees_;  // empty where the key did not exist
};

// Each key with everything in it, encoded ("missing" for a key that is not there), to compare states.
std::vector<std::string> KeysNow(const std::vector<std::string>& keyPaths);

}  // namespace vxtest
