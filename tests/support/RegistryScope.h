#pragma once
// Removes the keys a test touches (with everything below) before and after it, and raw registry access.
#include <windows.h>

#include <string>
#include <vector>

namespace vxtest {

// Deletes a key path ("HKEY_CURRENT_USER\...") with all its subkeys. Silent when it is missing.
void DeleteTree(const std::string& keyPath);
// The key opened for reading, or created; nullptr when that fails. The caller closes it.
HKEY OpenKey(const std::string& keyPath, bool create);
bool KeyExists(const std::string& keyPath);
bool ValueExists(const std::string& keyPath, const std::string& valueName);
// Raw type and bytes of a value (false when it is missing), and a raw write that creates the key.
bool ReadRaw(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes);
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
