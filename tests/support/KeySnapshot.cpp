#include "support/KeySnapshot.h"

#include "apply/Executor.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"

namespace vxtest {

struct KeySnapshot::Node {
  struct Value { std::string name; DWORD type; std::string data; };
  std::vector<Value> values;
  std::vector<std::pair<std::string, std::unique_ptr<Node>>> children;
};

namespace {

std::unique_ptr<KeySnapshot::Node> Capture(HKEY key) {
  auto node = std::make_unique<KeySnapshot::Node>();
  for (DWORD i = 0;; ++i) {
    char name[16384];
    DWORD nameLen = sizeof name, type = 0, size = 0;
    if (RegEnumValueA(key, i, name, &nameLen, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) break;
    std::string data(size, '\0');
    nameLen = sizeof name;
    RegEnumValueA(key, i, name, &nameLen, nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
    data.resize(size);
    node->values.push_back({std::string(name, nameLen), type, data});
  }
  for (DWORD i = 0;; ++i) {
    char name[256];
    DWORD nameLen = sizeof name;
    if (RegEnumKeyExA(key, i, name, &nameLen, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    HKEY child = nullptr;
    if (RegOpenKeyExA(key, name, 0, KEY_READ, &child) == ERROR_SUCCESS) {
      node->children.emplace_back(std::string(name, nameLen), Capture(child));
      RegCloseKey(child);
    }
  }
  return node;
}

void Write(HKEY key, const KeySnapshot::Node& node) {
  for (const auto& v : node.values)
    RegSetValueExA(key, v.name.c_str(), 0, v.type, reinterpret_cast<const BYTE*>(v.data.data()),
                   static_cast<DWORD>(v.data.size()));
  for (const auto& [name, child] : node.children) {
    HKEY sub = nullptr;
    if (RegCreateKeyA(key, name.c_str(), &sub) == ERROR_SUCCESS) {
      Write(sub, *child);
      RegCloseKey(sub);
    }
  }
}

}  // namespace

KeySnapshot::KeySnapshot(std::vector<std::string> keyPaths) : paths_(std::move(keyPaths)) {
  for (const auto& p : paths_) {
    HKEY key = OpenKey(p, false);
    nodes_.push_back(key ? Capture(key) : nullptr);
    if (key) RegCloseKey(key);
  }
}

KeySnapshot::~KeySnapshot() { Restore(); }

void KeySnapshot::Restore() {
  for (size_t i = 0; i < paths_.size(); ++i) {
    DeleteTree(paths_[i]);
    if (HKEY key = nodes_[i] ? OpenKey(paths_[i], true) : nullptr) {
      Write(key, *nodes_[i]);
      RegCloseKey(key);
    }
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
