#pragma once
// Registry access by full path text ("HKEY_CURRENT_USER\Software\Quenby\Vexillor"). Each call opens the
// key, does one read, write or delete, and closes it again. Reads never fail loudly: a text read that
// fails yields "Error", a number read that fails yields 10, and callers compare against these.
// Texts are byte strings in the system code page; a binary value travels as one character per byte.
// Not re-entrant: everything runs on the user-interface thread.
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

namespace modRegistry {

inline constexpr const char* kError = "Error";
inline constexpr int32_t kDwordError = 10;

// The predefined root handle for an exact (case-sensitive) root name, or 0 for any other text.
HKEY GetRootKey(const std::string& rootName);
// Splits "ROOT\sub\key": returns the root handle and replaces path by the subkey ("" for a bare root).
HKEY SplitKeyPath(std::string& path);

std::string GetString(const std::string& keyPath, const std::string& valueName);
int32_t GetDword(const std::string& keyPath, const std::string& valueName);
std::string GetBinary(const std::string& keyPath, const std::string& valueName);

// Writes create a missing key (with every missing parent) and try once more.
void SaveString(const std::string& keyPath, const std::string& valueName, const std::string& text);
void SaveDword(const std::string& keyPath, const std::string& valueName, int32_t value);
// Does not create the key: a key that cannot be opened is reported with the message "Error" and
// nothing is written. An empty byte string throws std::out_of_range and writes nothing.
void SaveBinary(const std::string& keyPath, const std::string& valueName, const std::string& bytes);

void DeleteValue(const std::string& keyPath, const std::string& valueName);
void DeleteKey(const std::string& parentPath, const std::string& subkeyName);
void CreateKey(const std::string& keyPath);

// Raw access for callers that must put a value back exactly as it was found (Apply's undo record).
// ReadValue is false when the key or the value is missing; WriteValue creates a missing key.
bool KeyExists(const std::string& keyPath);
bool ReadValue(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes);
void WriteValue(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes);

// SaveBinary's "Error" message goes through this; by default a plain message box with an OK button.
// Tests install their own to record it.
void SetErrorReporter(std::function<void(const std::string&)> report);

}  // namespace modRegistry
