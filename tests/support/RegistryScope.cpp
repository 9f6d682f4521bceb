#include "support/RegistryScope.h"

#include <shlwapi.h>

#include "registry/LaterApi.h"
#include "registry/modRegistry.h"

namespace vxtest {

// The helpers see the registry view the program writes (the 64-bit one under WOW64), so a test checks
// what Explorer would read.
void DeleteTree(const std::string& keyPath) {
  const auto slash = keyPath.rfind('\\');
  if (slash == std::string::npos) return;
  std::string parent = keyPath.substr(0, slash);
  HKEY root = modRegistry::SplitKeyPath(parent), key = nullptr;
  if (!root) return;
  if (parent.empty()) {
    SHDeleteKeyA(root, keyPath.substr(slash + 1).c_str());
  } else if (RegOpenKeyExA(root, parent.c_str(), 0, KEY_ALL_ACCESS | later::RegistryView(), &key) == ERROR_SUCCESS) {
    SHDeleteKeyA(key, keyPath.substr(slash + 1).c_str());
    RegCloseKey(key);
  }
}

HKEY OpenKey(const std::string& keyPath, bool create) {
  std::string sub = keyPath;
  HKEY root = modRegistry::SplitKeyPath(sub), key = nullptr;
  const REGSAM view = later::RegistryView();
  const LONG rc = create ? RegCreateKeyExA(root, sub.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, &key, nullptr)
                         : RegOpenKeyExA(root, sub.c_str(), 0, KEY_READ | view, &key);
  return rc == ERROR_SUCCESS ? key : nullptr;
}

bool KeyExists(const std::string& keyPath) {
  HKEY k = OpenKey(keyPath, false);
  if (k) RegCloseKey(k);
  return k != nullptr;
}

bool ReadRaw(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes) {
  HKEY k = OpenKey(keyPath, false);
  if (!k) return false;
  DWORD size = 0;
  LONG rc = RegQueryValueExA(k, valueName.c_str(), nullptr, &type, nullptr, &size);
  if (rc == ERROR_SUCCESS) {
    bytes.assign(size, '\0');
    rc = RegQueryValueExA(k, valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    bytes.resize(size);
  }
  RegCloseKey(k);
  return rc == ERROR_SUCCESS;
}

bool ValueExists(const std::string& keyPath, const std::string& valueName) {
  DWORD type;
  std::string bytes;
  return ReadRaw(keyPath, valueName, type, bytes);
}

void WriteRaw(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes) {
  HKEY k = OpenKey(keyPath, true);
  if (!k) return;
  RegSetValueExA(k, valueName.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                 static_cast<DWORD>(bytes.size()));
  RegCloseKey(k);
}

RegistryScope::RegistryScope(std::vector<std::string> keys) : keys_(std::move(keys)) {
  for (const auto& k : keys_) DeleteTree(k);
}

RegistryScope::~RegistryScope() {
  for (const auto& k : keys_) DeleteTree(k);
}

}  // namespace vxtest
