#include "registry/modRegistry.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <vector>

#include "registry/LaterApi.h"
#include "registry/modCommon.h"

namespace modRegistry {
namespace {

constexpr REGSAM kRead = KEY_READ;    // 0x20019
constexpr REGSAM kWrite = KEY_WRITE;  // 0x20006

// Every open goes to the view Explorer reads: under WOW64 a 32-bit process would otherwise see the
// 32-bit copies of HKEY_LOCAL_MACHINE\SOFTWARE and of the classes.
REGSAM InView(REGSAM access) { return access | later::RegistryView(); }
constexpr DWORD kStringBuffer = 255;  // texts of 255 bytes or more (with their NUL) do not fit
constexpr DWORD kBinaryProbe = 100;   // the first binary query only learns the value's size

HWND g_errorOwner = nullptr;

std::function<void(const std::string&)>& ErrorReporter() {
  // Owned by the main window, so that the box keeps it from taking input while it is up.
  static std::function<void(const std::string&)> report = [](const std::string& text) {
    MessageBoxA(g_errorOwner, text.c_str(), "Vexillor", MB_OK);
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
    if (RegOpenKeyExA(root, sub.c_str(), 0, InView(access), &key_) != ERROR_SUCCESS) key_ = nullptr;
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
bool WriteCreating(const std::string& keyPath, Write write, REGSAM access = kWrite) {
  for (int attempt = 0; attempt < 2; ++attempt) {
    OpenKey key(keyPath, access);
    if (key) return write(key.get());
    if (attempt == 0) CreateKey(keyPath);
  }
  return false;
}

bool SetBytes(HKEY key, const std::string& name, DWORD type, const void* data, size_t size) {
  return RegSetValueExA(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)) ==
         ERROR_SUCCESS;
}

// The value's type and bytes; most values fit the first buffer, so one query is the usual cost.
bool QueryAll(HKEY key, const std::string& name, DWORD& type, std::string& bytes) {
  char small[512];
  DWORD size = sizeof small;
  LONG rc = Query(key, name, &type, small, &size);
  if (rc == ERROR_SUCCESS) {
    bytes.assign(small, size);
    return true;
  }
  if (rc != ERROR_MORE_DATA) return false;
  bytes.assign(size, '\0');
  if (Query(key, name, &type, bytes.data(), &size) != ERROR_SUCCESS) return false;
  bytes.resize(size);
  return true;
}

constexpr int kTreeDepth = 32;

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

bool SaveString(const std::string& keyPath, const std::string& valueName, const std::string& text) {
  return WriteCreating(keyPath, [&](HKEY key) { return SetBytes(key, valueName, REG_SZ, text.data(), text.size()); });
}

bool SaveDword(const std::string& keyPath, const std::string& valueName, int32_t value) {
  const DWORD data = static_cast<DWORD>(value);
  return WriteCreating(keyPath, [&](HKEY key) { return SetBytes(key, valueName, REG_DWORD, &data, sizeof data); });
}

bool SaveBinary(const std::string& keyPath, const std::string& valueName, const std::string& bytes) {
  OpenKey key(keyPath, kWrite);
  if (!key) {
    ErrorReporter()(kError);
    return false;
  }
  if (bytes.empty()) throw std::out_of_range("Subscript out of range");
  return SetBytes(key.get(), valueName, REG_BINARY, bytes.data(), bytes.size());
}

bool DeleteValue(const std::string& keyPath, const std::string& valueName) {
  OpenKey key(keyPath, kWrite);
  if (!key) {  // nothing to delete succeeds; a value there that we may not remove fails
    DWORD type = 0;
    std::string bytes;
    return !ReadValue(keyPath, valueName, type, bytes);
  }
  const LONG rc = RegDeleteValueA(key.get(), valueName.c_str());
  return rc == ERROR_SUCCESS || rc == ERROR_FILE_NOT_FOUND;
}

bool DeleteKey(const std::string& parentPath, const std::string& subkeyName) {
  OpenKey key(parentPath, kWrite);
  if (!key) return !KeyExists(parentPath + "\\" + subkeyName);
  const LONG rc = later::DeleteRegistryKey(key.get(), subkeyName.c_str());
  return rc == ERROR_SUCCESS || rc == ERROR_FILE_NOT_FOUND;
}

bool CreateKey(const std::string& keyPath) {
  std::string sub = keyPath;
  HKEY root = SplitKeyPath(sub);
  HKEY created = nullptr;
  // RegCreateKeyA takes no view; under WOW64 the Ex form with the 64-bit view does the same.
  const LONG rc = later::IsWow64() ? RegCreateKeyExA(root, sub.c_str(), 0, nullptr, 0, InView(MAXIMUM_ALLOWED),
                                                     nullptr, &created, nullptr)
                                   : RegCreateKeyA(root, sub.c_str(), &created);
  if (rc != ERROR_SUCCESS) return false;
  RegCloseKey(created);
  return true;
}

bool KeyExists(const std::string& keyPath) {
  OpenKey key(keyPath, kRead);
  return static_cast<bool>(key);
}

bool IsSharedKey(const std::string& keyPath) {
  std::string lower = keyPath;
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (std::count(lower.begin(), lower.end(), '\\') < 2) return true;
  static const char* const kShared[] = {
      "hkey_current_user\\software\\microsoft", "hkey_local_machine\\software\\microsoft",
      "hkey_current_user\\software\\classes",   "hkey_local_machine\\software\\classes",
      "hkey_current_user\\software\\policies",  "hkey_local_machine\\software\\policies",
      "hkey_classes_root\\clsid",               "hkey_current_user\\control panel",
  };
  for (const char* s : kShared)
    if (lower == s) return true;
  return false;
}

bool ReadValue(const std::string& keyPath, const std::string& valueName, DWORD& type, std::string& bytes) {
  OpenKey key(keyPath, kRead);
  return key && QueryAll(key.get(), valueName, type, bytes);
}

bool WriteValue(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes) {
  return WriteCreating(keyPath, [&](HKEY key) { return SetBytes(key, valueName, type, bytes.data(), bytes.size()); });
}

std::vector<Previous> ReadPrevious(const std::string& keyPath, const std::vector<std::string>& names) {
  std::vector<Previous> out(names.size());
  OpenKey key(keyPath, kRead);
  if (!key) {
    std::vector<std::string> missing;
    for (std::string k = keyPath; !KeyExists(k);) {
      const auto slash = k.rfind('\\');
      if (slash == std::string::npos) break;
      missing.push_back(k);
      k.resize(slash);
    }
    for (Previous& p : out) p.createdKeys = missing;
    return out;
  }
  for (size_t i = 0; i < names.size(); ++i)
    out[i].state = QueryAll(key.get(), names[i], out[i].type, out[i].bytes) ? Previous::Value : Previous::KeyOnly;
  return out;
}

Writer::~Writer() { Close(); }

void Writer::Close() {
  if (key_) RegCloseKey(key_);
  key_ = nullptr;
  path_.clear();
}

bool Writer::Set(const std::string& keyPath, const std::string& valueName, DWORD type, const std::string& bytes) {
  if (!key_ || path_ != keyPath) {
    Close();
    for (int attempt = 0; attempt < 2 && !key_; ++attempt) {
      std::string sub = keyPath;
      HKEY root = SplitKeyPath(sub);
      if (RegOpenKeyExA(root, sub.c_str(), 0, InView(kWrite), &key_) != ERROR_SUCCESS) key_ = nullptr;
      if (!key_ && attempt == 0) CreateKey(keyPath);
    }
    if (!key_) return false;
    path_ = keyPath;
  }
  return SetBytes(key_, valueName, type, bytes.data(), bytes.size());
}

namespace {

bool ReadTreeAt(HKEY key, KeyTree& tree, int depth) {
  for (DWORD i = 0;; ++i) {
    char name[16384];
    DWORD nameSize = sizeof name;
    DWORD type = REG_NONE, size = 0;
    if (RegEnumValueA(key, i, name, &nameSize, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) break;
    KeyTree::Value v;
    v.name.assign(name, nameSize);
    if (QueryAll(key, v.name, v.type, v.bytes)) tree.values.push_back(std::move(v));
  }
  if (depth >= kTreeDepth) return true;
  for (DWORD i = 0;; ++i) {
    char name[256];
    DWORD nameSize = sizeof name;
    if (RegEnumKeyExA(key, i, name, &nameSize, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    HKEY sub = nullptr;
    if (RegOpenKeyExA(key, name, 0, InView(kRead), &sub) != ERROR_SUCCESS) continue;
    KeyTree child;
    ReadTreeAt(sub, child, depth + 1);
    RegCloseKey(sub);
    tree.subkeys.emplace_back(std::string(name, nameSize), std::move(child));
  }
  return true;
}

}  // namespace

bool ReadTree(const std::string& keyPath, KeyTree& tree) {
  tree = KeyTree{};
  OpenKey key(keyPath, kRead);
  return key && ReadTreeAt(key.get(), tree, 0);
}

bool WriteTree(const std::string& keyPath, const KeyTree& tree) {
  bool ok = CreateKey(keyPath);
  for (const auto& v : tree.values) ok = WriteValue(keyPath, v.name, v.type, v.bytes) && ok;
  for (const auto& [name, child] : tree.subkeys) ok = WriteTree(keyPath + "\\" + name, child) && ok;
  return ok;
}

bool DeleteTree(const std::string& keyPath) {
  KeyTree tree;
  if (!ReadTree(keyPath, tree)) return true;
  for (const auto& sub : tree.subkeys) DeleteTree(keyPath + "\\" + sub.first);
  const auto slash = keyPath.rfind('\\');
  if (slash == std::string::npos) return false;
  return DeleteKey(keyPath.substr(0, slash), keyPath.substr(slash + 1));
}

void SetErrorOwner(HWND owner) { g_errorOwner = owner; }

void SetErrorReporter(std::function<void(const std::string&)> report) {
  ErrorReporter() = std::move(report);
}

}  // namespace modRegistry
