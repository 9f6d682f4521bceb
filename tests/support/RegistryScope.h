#pragma once
// Removes the registry keys a test touched (and everything below them) when the test ends, and
// before it starts, so tests do not depend on their order.
#include <windows.h>

#include <string>
#include <vector>

namespace vxtest {

// Deletes a key path ("HKEY_CURRENT_USER\...") with all its subkeys. Silent when it is missing.
void DeleteTree(const std::string& keyPath);
// The key opened for reading, or created; nullptr when that fails. The caller closes it.
HKEY OpenKey(const std::string& keyPath, bool create);
// True when the key exists.
bool KeyExists(const std::string& keyPath);
// True when the value exists (of any type).
bool ValueExists(const std::string& keyPath, const std::string& valueName);
// Raw type and bytes of a value; false when it is missing.
bool ReadRaw(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes);
// Writes a value of any type directly, creating the key.
void WriteRaw(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes);

class RegistryScope {
 public:
  explicit RegistryScope(std::vector<std::string> keys);
  ~RegistryScope();
  RegistryScope(const RegistryScope&) = delete;
  RegistryScope& operator=(const RegistryScope&) = delete;

 private:
  std::vector<std::string> keys_;
};

// The program's own preference key, which many tests reset.
inline const std::string kProgramKey = "HKEY_CURRENT_USER\\Software\\Quenby\\Vexillor";

}  // namespace vxtest
