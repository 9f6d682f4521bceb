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
#include <utility>
#include <vector>

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

// Writes create a missing key (with every missing parent) and try once more. Callers of the program
// do not check writes; the result (true when the value was written) is for Apply's record of failures.
bool SaveString(const std::string& keyPath, const std::string& valueName, const std::string& text);
bool SaveDword(const std::string& keyPath, const std::string& valueName, int32_t value);
// Does not create the key: a key that cannot be opened is reported with the message "Error" and
// nothing is written. An empty byte string throws std::out_of_range and writes nothing.
bool SaveBinary(const std::string& keyPath, const std::string& valueName, const std::string& bytes);

// Deletions report false only when the key or value was there and could not be removed.
bool DeleteValue(const std::string& keyPath, const std::string& valueName);
bool DeleteKey(const std::string& parentPath, const std::string& subkeyName);
bool CreateKey(const std::string& keyPath);

// Keys every Windows has and that hold far more than the program's own (the first levels of the
// roots, "...\Software\Microsoft", "...\Software\Classes", "...\Control Panel", ...): never removed,
// even where a write of the program had to make one (a fresh profile may lack "Software\Classes").
bool IsSharedKey(const std::string& keyPath);

// Raw access for callers that must put a value back exactly as it was found (Apply's undo record).
// ReadValue is false when the key or the value is missing; WriteValue creates a missing key.
bool KeyExists(const std::string& keyPath);
bool ReadValue(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes);
bool WriteValue(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes);

// What a value holds before a write: the value (type and bytes), or only its key, or not even the key
// (then createdKeys lists the keys a write would have to create, deepest first).
struct Previous {
  enum State { Value, KeyOnly, NoKey } state = NoKey;
  DWORD type = REG_NONE;
  std::string bytes;
  std::vector<std::string> createdKeys;
};
// What several values of one key hold now, read with one open (one Previous per name, in order).
std::vector<Previous> ReadPrevious(const std::string& keyPath, const std::vector<std::string>& names);

// Writes values one after another, keeping a key open while the writes go to the same key (a plan
// writes runs of values to one key). Each write is the same as WriteValue's: a missing key is created.
class Writer {
 public:
  Writer() = default;
  ~Writer();
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  bool Set(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes);
  void Close();

 private:
  std::string path_;
  HKEY key_ = nullptr;
};

// A whole key with its values and subkeys, for putting back a key that a deletion removes.
struct KeyTree {
  struct Value {
    std::string name;
    DWORD type = REG_NONE;
    std::string bytes;
    bool operator==(const Value&) const = default;
  };
  std::vector<Value> values;
  std::vector<std::pair<std::string, KeyTree>> subkeys;
  bool operator==(const KeyTree&) const = default;
};
// False when the key cannot be opened. Subkeys deeper than 32 levels are not followed.
bool ReadTree(const std::string& keyPath, KeyTree& tree);
// Creates the key and writes every value and subkey of the tree into it.
bool WriteTree(const std::string& keyPath, const KeyTree& tree);
// Deletes a key with everything below it (RegDeleteKeyA alone leaves a key with subkeys on NT).
bool DeleteTree(const std::string& keyPath);

// SaveBinary's "Error" message goes through this; by default a plain message box with an OK button.
// Tests install their own to record it.
void SetErrorReporter(std::function<void(const std::string&)> report);
// The window that owns the default "Error" box.
void SetErrorOwner(HWND owner);

}  // namespace modRegistry
