#include "registry/modRegistry.h"

#include <stdexcept>
#include <vector>

#include "registry/modCommon.h"

namespace modRegistry {
namespace {

constexpr REGSAM kRead = KEY_READ;    // 0x20019
constexpr REGSAM kWrite = KEY_WRITE;  // 0x20006
constexpr DWORD kStringBuffer = 255;  // texts of 255 bytes or more (with their NUL) do not fit
constexpr DWORD kBinaryProbe = 100;   // the first binary query only learns the value's size

std::function<void(const std::string&)>& ErrorReporter() {
  static std::function<void(const std::string&)> report = [](const std::string& text) {
    MessageBoxA(nullptr, text.c_str(), "Vexillor", MB_OK);
  };
  return report;
}

// One open key, closed on every path out of an operation. (A failed query must not leave a key
// open behind it: the handle would leak once per failed read, and reads fail routinely.)
class OpenKey {
 public:
  OpenKey(const std::string& fullPath, REGSAM access) {
    std::string sub = fullPath;
    HKEY root = SplitKeyPath(sub);
    if (RegOpenKeyExA(root, sub.c_str(), 0, access, &key_) != ERROR_SUCCESS) key_ = nullptr;
  }
  ~OpenKey() {
    if (key_) RegCloseKey(key_);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  explicit operator bool() const { return key_ != nullptr; }
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

LONG Query(HKEY key, const std::string& name, DWORD* type, void* data, DWORD* size) {
  return RegQueryValueExA(key, name.c_str(), nullptr, type, static_cast<BYTE*>(data), size);
}

// Writes that create a missing key: open, and if that fails create the key and try exactly once
// more. A path that can be neither opened nor created (an unknown root, no rights) would otherwise
// retry forever; one retry keeps every outcome a caller can see and always ends.
template <typename Write>
void WriteCreating(const std::string& keyPath, Write write) {
  for (int attempt = 0; attempt < 2; ++attempt) {
    OpenKey key(keyPath, kWrite);
    if (key) {
      write(key.get());
      return;
    }
    if (attempt == 0) CreateKey(keyPath);
  }
}

}  // namespace

HKEY GetRootKey(const std::string& rootName) {
  static const struct {
    const char* name;
    HKEY root;
  } roots[] = {
      {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},         {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
      {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},       {"HKEY_USERS", HKEY_USERS},
      {"HKEY_PERFORMANCE_DATA", HKEY_PERFORMANCE_DATA}, {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
      {"HKEY_DYN_DATA", HKEY_DYN_DATA},
  };
  for (const auto& r : roots)
    if (rootName == r.name) return r.root;
  return nullptr;
}

HKEY SplitKeyPath(std::string& path) {
  auto slash = path.find('\\');
  if (slash == std::string::npos) {
    HKEY root = GetRootKey(path);
    path.clear();
    return root;
  }
  HKEY root = GetRootKey(path.substr(0, slash));
  path = path.substr(slash + 1);
  return root;
}

std::string GetString(const std::string& keyPath, const std::string& valueName) {
  OpenKey key(keyPath, kRead);
  if (!key) return kError;
  std::string buffer(kStringBuffer, ' ');
  DWORD size = kStringBuffer;
  DWORD type = 0;
  if (Query(key.get(), valueName, &type, buffer.data(), &size) != ERROR_SUCCESS) return kError;
  // Keep the last byte for the terminator: a value that fills the whole buffer did not fit.
  if (size >= kStringBuffer) return kError;
  // Cut at the terminator first, then trim: some systems add the terminator that SaveString leaves
  // out, and a value that ends in blanks must come back without them either way.
  return TrimSpaces(StripNull(buffer));
}

int32_t GetDword(const std::string& keyPath, const std::string& valueName) {
  OpenKey key(keyPath, kRead);
  if (!key) return kDwordError;
  DWORD type = REG_DWORD;
  DWORD size = sizeof(DWORD);
  DWORD value = 0;
  if (Query(key.get(), valueName, &type, &value, &size) != ERROR_SUCCESS) return kDwordError;
  return static_cast<int32_t>(value);
}

std::string GetBinary(const std::string& keyPath, const std::string& valueName) {
  OpenKey key(keyPath, kRead);
  if (!key) return kError;
  // The probe's own result does not matter: it only tells the size (all of it when the value is
  // short, the needed size when it is not).
  char probe[kBinaryProbe];
  DWORD size = kBinaryProbe;
  DWORD type = 0;
  Query(key.get(), valueName, &type, probe, &size);
  std::string buffer(size, ' ');
  if (Query(key.get(), valueName, &type, buffer.data(), &size) != ERROR_SUCCESS) return kError;
  buffer.resize(size);
  return buffer;
}

void SaveString(const std::string& keyPath, const std::string& valueName, const std::string& text) {
  WriteCreating(keyPath, [&](HKEY key) {
    RegSetValueExA(key, valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()),
                   static_cast<DWORD>(text.size()));
  });
}

void SaveDword(const std::string& keyPath, const std::string& valueName, int32_t value) {
  WriteCreating(keyPath, [&](HKEY key) {
    DWORD data = static_cast<DWORD>(value);
    RegSetValueExA(key, valueName.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&data),
                   sizeof data);
  });
}

void SaveBinary(const std::string& keyPath, const std::string& valueName, const std::string& bytes) {
  OpenKey key(keyPath, kWrite);
  if (!key) {
    ErrorReporter()(kError);
    return;
  }
  if (bytes.empty()) throw std::out_of_range("Subscript out of range");
  std::vector<BYTE> data(bytes.begin(), bytes.end());
  RegSetValueExA(key.get(), valueName.c_str(), 0, REG_BINARY, data.data(),
                 static_cast<DWORD>(data.size()));
}

void DeleteValue(const std::string& keyPath, const std::string& valueName) {
  OpenKey key(keyPath, kWrite);
  if (key) RegDeleteValueA(key.get(), valueName.c_str());
}

void DeleteKey(const std::string& parentPath, const std::string& subkeyName) {
  OpenKey key(parentPath, kWrite);
  if (key) RegDeleteKeyA(key.get(), subkeyName.c_str());
}

void CreateKey(const std::string& keyPath) {
  std::string sub = keyPath;
  HKEY root = SplitKeyPath(sub);
  HKEY created = nullptr;
  if (RegCreateKeyA(root, sub.c_str(), &created) == ERROR_SUCCESS) RegCloseKey(created);
}

bool KeyExists(const std::string& keyPath) {
  OpenKey key(keyPath, kRead);
  return static_cast<bool>(key);
}

bool ReadValue(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes) {
  OpenKey key(keyPath, kRead);
  if (!key) return false;
  DWORD size = 0;
  if (Query(key.get(), valueName, &type, nullptr, &size) != ERROR_SUCCESS) return false;
  bytes.assign(size, '\0');
  if (Query(key.get(), valueName, &type, bytes.data(), &size) != ERROR_SUCCESS) return false;
  bytes.resize(size);
  return true;
}

void WriteValue(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes) {
  WriteCreating(keyPath, [&](HKEY key) {
    RegSetValueExA(key, valueName.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                   static_cast<DWORD>(bytes.size()));
  });
}

void SetErrorReporter(std::function<void(const std::string&)> report) {
  ErrorReporter() = std::move(report);
}

}  // namespace modRegistry
