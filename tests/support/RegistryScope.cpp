#include "support/RegistryScope.h"

#include <shlwapi.h>

#include "registry/modRegistry.h"

namespace vxtest {

void DeleteTree(const std::string& keyPath) {
  std::string sub = keyPath;
  HKEY root = modRegistry::SplitKeyPath(sub);
  if (root && !sub.empty()) SHDeleteKeyA(root, sub.c_str());
}

HKEY OpenKey(const std::string& keyPath, bool create) {
  std::string sub = keyPath;
  HKEY root = modRegistry::SplitKeyPath(sub), key = nullptr;
  const LONG rc = create ? RegCreateKeyA(root, sub.c_str(), &key) : RegOpenKeyExA(root, sub.c_str(), 0, KEY_READ, &key);
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
