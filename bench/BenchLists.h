#pragma once
// What the Apply, settings and start-up benchmarks share: the main window's icon lists on a window of
// their own, and the bare registry loop a plan's writes are measured against.
#include <windows.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "apply/Step.h"
#include "icons/Catalogue.h"
#include "registry/modRegistry.h"
#include "ui/ListBoxIcons.h"

namespace bench {

// One list for each icon tab, empty until filled.
struct IconListsWindow {
  explicit IconListsWindow(int width = 300, int height = 500) {
    host = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, width + 100, height + 100, nullptr, nullptr,
                           GetModuleHandleA(nullptr), nullptr);
    for (int tab = vx::kTabDesktop; tab <= vx::kTabPointers; ++tab) {
      if (tab == vx::kTabExplorer) continue;
      const auto t = static_cast<size_t>(tab);
      owned[t] = std::make_unique<ui::ListBoxIcons>();
      owned[t]->Create(host, 100 + tab, 0, 0, width, height);
      lists[t] = owned[t].get();
    }
  }
  ~IconListsWindow() {
    for (auto& l : owned) l.reset();
    DestroyWindow(host);
  }
  IconListsWindow(const IconListsWindow&) = delete;
  IconListsWindow& operator=(const IconListsWindow&) = delete;

  // As at start-up: the catalogue read and every list filled.
  void Fill(const vx::Environment& env) { catalogue = vx::Add_Icons(env, lists); }

  HWND host = nullptr;
  std::array<std::unique_ptr<ui::ListBoxIcons>, 10> owned;
  vx::IconLists lists{};
  std::vector<vx::IconItem> catalogue;
};

// The same writes and deletions with nothing but the registry API (and the folder calls): open (or
// create) the key, write, close.
inline void BareWrites(const vx::Plan& writes) {
  for (const vx::Step& s : writes) {
    switch (s.kind) {
      case vx::StepKind::CreateFolder: CreateDirectoryA(s.key.c_str(), nullptr); continue;
      case vx::StepKind::RemoveFolder: RemoveDirectoryA(s.key.c_str()); continue;
      default: break;
    }
    std::string sub = s.key;
    HKEY root = modRegistry::SplitKeyPath(sub);
    HKEY key = nullptr;
    if (RegOpenKeyExA(root, sub.c_str(), 0, KEY_WRITE, &key) != ERROR_SUCCESS) {
      key = nullptr;
      const bool creates = s.kind == vx::StepKind::SetString || s.kind == vx::StepKind::SetDword;
      if (!creates || RegCreateKeyA(root, sub.c_str(), &key) != ERROR_SUCCESS) continue;
    }
    const DWORD number = static_cast<DWORD>(s.number);
    switch (s.kind) {
      case vx::StepKind::SetString:
      case vx::StepKind::SetBinary:
        RegSetValueExA(key, s.value.c_str(), 0, s.kind == vx::StepKind::SetString ? REG_SZ : REG_BINARY,
                       reinterpret_cast<const BYTE*>(s.text.data()), static_cast<DWORD>(s.text.size()));
        break;
      case vx::StepKind::SetDword:
        RegSetValueExA(key, s.value.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
        break;
      case vx::StepKind::DeleteValue: RegDeleteValueA(key, s.value.c_str()); break;
      case vx::StepKind::DeleteKey: RegDeleteKeyA(key, s.value.c_str()); break;
      default: break;
    }
    RegCloseKey(key);
  }
}

}  // namespace bench
