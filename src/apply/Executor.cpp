#include "apply/Executor.h"

#include <cstring>
#include <exception>

namespace vx {
namespace {

using modRegistry::KeyTree;

StepHook& Hook() {
  static StepHook hook;
  return hook;
}

std::string ParentOf(const std::string& keyPath) {
  auto slash = keyPath.rfind('\\');
  return slash == std::string::npos ? std::string() : keyPath.substr(0, slash);
}

std::string LeafOf(const std::string& keyPath) {
  auto slash = keyPath.rfind('\\');
  return slash == std::string::npos ? keyPath : keyPath.substr(slash + 1);
}

// Steps that delete, deepest first, every key of keyPath's chain that does not exist yet, so that a
// write that is about to create them can be taken back completely. Empty when the key exists.
Plan RemoveCreatedKeys(const std::string& keyPath) {
  Plan steps;
  std::string k = keyPath;
  while (!k.empty() && !modRegistry::KeyExists(k)) {
    const std::string parent = ParentOf(k);
    if (parent.empty()) break;  // an unknown root: nothing can be created under it anyway
    steps.push_back(DeleteKey(parent, LeafOf(k)));
    k = parent;
  }
  return steps;
}

// The step that puts a value back as it is now: its old type and bytes, or its absence.
Plan PutBackValue(const std::string& key, const std::string& value) {
  DWORD type = REG_NONE;
  std::string bytes;
  if (modRegistry::ReadValue(key, value, type, bytes)) return {SetRaw(key, value, type, bytes)};
  if (modRegistry::KeyExists(key)) return {DeleteValue(key, value)};
  return RemoveCreatedKeys(key);
}

bool FolderExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// A system parameter as it is now, as the step that sets it back; nothing for parameters that have no
// reading (the cursor scheme is reloaded from the registry, so repeating the call is its undo).
std::optional<Step> CurrentParameter(const Step& s) {
  auto flag = [&](UINT get) -> std::optional<Step> {
    BOOL on = FALSE;
    if (!SystemParametersInfoA(get, 0, &on, 0)) return std::nullopt;
    return SystemParameter(s.action, on ? 1 : 0, s.flags);
  };
  auto number = [&](int value) { return SystemParameter(s.action, static_cast<UINT>(value), s.flags); };
  switch (s.action) {
    case SPI_SETBEEP: return flag(SPI_GETBEEP);
    case SPI_SETICONTITLEWRAP: return flag(SPI_GETICONTITLEWRAP);
    case SPI_SETFONTSMOOTHING: return flag(SPI_GETFONTSMOOTHING);
    case SPI_SETDRAGFULLWINDOWS: return flag(SPI_GETDRAGFULLWINDOWS);
    case SPI_SETMOUSEBUTTONSWAP: return number(GetSystemMetrics(SM_SWAPBUTTON));
    case SPI_SETDOUBLECLKWIDTH: return number(GetSystemMetrics(SM_CXDOUBLECLK));
    case SPI_SETDOUBLECLKHEIGHT: return number(GetSystemMetrics(SM_CYDOUBLECLK));
    case SPI_SETDOUBLECLICKTIME: return number(static_cast<int>(GetDoubleClickTime()));
    case SPI_SETDRAGWIDTH: return number(GetSystemMetrics(SM_CXDRAG));
    case SPI_SETDRAGHEIGHT: return number(GetSystemMetrics(SM_CYDRAG));
    case SPI_SETANIMATION: {
      ANIMATIONINFO info{};
      info.cbSize = sizeof info;
      if (!SystemParametersInfoA(SPI_GETANIMATION, sizeof info, &info, 0)) return std::nullopt;
      return SystemParameter(s.action, sizeof info, s.flags,
                             std::string(reinterpret_cast<const char*>(&info), sizeof info));
    }
    case SPI_SETDESKWALLPAPER: {
      char path[MAX_PATH + 1] = {};
      if (!SystemParametersInfoA(SPI_GETDESKWALLPAPER, MAX_PATH, path, 0)) return std::nullopt;
      return SystemParameter(s.action, 0, s.flags, std::string(path, std::strlen(path) + 1));
    }
    default: return std::nullopt;
  }
}

// What undoes one step, read just before the step runs. Notifications that cannot be read back go to
// `repeat`, to be made again once everything else is back.
Plan UndoFor(const Step& step, Plan& repeat) {
  switch (step.kind) {
    case StepKind::SetString:
    case StepKind::SetDword:
    case StepKind::SetRaw:
      return {};  // recorded by the write itself (Perform)
    case StepKind::SetBinary: {
      // SaveBinary does not create keys, so a missing key leaves nothing to take back.
      if (!modRegistry::KeyExists(step.key)) return {};
      return PutBackValue(step.key, step.value);
    }
    case StepKind::DeleteValue: {
      DWORD type = REG_NONE;
      std::string bytes;
      if (modRegistry::ReadValue(step.key, step.value, type, bytes)) return {SetRaw(step.key, step.value, type, bytes)};
      return {};
    }
    case StepKind::DeleteKey: {
      KeyTree tree;
      if (!modRegistry::ReadTree(step.key + "\\" + step.value, tree)) return {};
      return {PutKeyTree(step.key + "\\" + step.value, EncodeKeyTree(tree))};
    }
    case StepKind::CreateKey:
      return RemoveCreatedKeys(step.key);
    case StepKind::PutKeyTree: {
      KeyTree tree;
      if (modRegistry::ReadTree(step.key, tree)) return {PutKeyTree(step.key, EncodeKeyTree(tree))};
      return RemoveCreatedKeys(step.key);
    }
    case StepKind::CreateFolder:
      return FolderExists(step.key) ? Plan{} : Plan{RemoveFolder(step.key)};
    case StepKind::RemoveFolder:
      return FolderExists(step.key) ? Plan{CreateFolder(step.key)} : Plan{};
    case StepKind::SystemParameter:
      if (auto back = CurrentParameter(step)) return {*back};
      repeat.push_back(step);
      return {};
    case StepKind::Broadcast:
      repeat.push_back(step);
      return {};
  }
  return {};
}

// A registry write that reads what it replaces in the same open (the undo record costs one query).
bool Exchange(const Step& step, DWORD type, const std::string& bytes, Plan* undo) {
  if (!undo) return modRegistry::WriteValue(step.key, step.value, type, bytes);
  modRegistry::Previous previous;
  const bool ok = modRegistry::ExchangeValue(step.key, step.value, type, bytes, previous);
  switch (previous.state) {
    case modRegistry::Previous::Value: *undo = {SetRaw(step.key, step.value, previous.type, previous.bytes)}; break;
    case modRegistry::Previous::KeyOnly: *undo = {DeleteValue(step.key, step.value)}; break;
    case modRegistry::Previous::NoKey:
      for (const std::string& k : previous.createdKeys) undo->push_back(DeleteKey(ParentOf(k), LeafOf(k)));
      break;
  }
  return ok;
}

// Carries out one step; false when it failed. `undo`, when given, receives what undoes the writes that
// record themselves.
bool Perform(const Step& step, Plan* undo) {
  switch (step.kind) {
    case StepKind::SetString:
      return Exchange(step, REG_SZ, step.text, undo);
    case StepKind::SetDword: {
      const DWORD data = static_cast<DWORD>(step.number);
      return Exchange(step, REG_DWORD, std::string(reinterpret_cast<const char*>(&data), sizeof data), undo);
    }
    case StepKind::SetRaw:
      return Exchange(step, step.rawType, step.text, undo);
    case StepKind::SetBinary:
      return modRegistry::SaveBinary(step.key, step.value, step.text);
    case StepKind::DeleteValue:
      return modRegistry::DeleteValue(step.key, step.value);
    case StepKind::DeleteKey:
      return modRegistry::DeleteKey(step.key, step.value);
    case StepKind::CreateKey:
      return modRegistry::CreateKey(step.key);
    case StepKind::PutKeyTree: {
      KeyTree tree;
      if (!DecodeKeyTree(step.text, tree)) return false;
      return modRegistry::WriteTree(step.key, tree);
    }
    case StepKind::CreateFolder:
      return CreateDirectoryA(step.key.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
    case StepKind::RemoveFolder:
      return RemoveDirectoryA(step.key.c_str()) || !FolderExists(step.key);
    case StepKind::SystemParameter: {
      // The call may write through pvParam, so it gets a copy of its own. Its result is not a write
      // of ours: a parameter the system refuses is not counted as a failure.
      std::string buffer = step.pvData.value_or(std::string());
      SystemParametersInfoA(step.action, step.uiParam, step.pvData ? buffer.data() : nullptr, step.flags);
      return true;
    }
    case StepKind::Broadcast:
      SendMessageA(HWND_BROADCAST, step.message, step.wParam, step.lParam);
      return true;
  }
  return true;
}

std::string Reason(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& e) {
    return e.what();
  } catch (...) {
    return "an unknown error";
  }
}

// --- key tree text: "V" name type bytes | "K" name tree | "E", each text as its length and its bytes.

void PutNumber(std::string& out, uint32_t n) { out.append(reinterpret_cast<const char*>(&n), sizeof n); }
void PutText(std::string& out, const std::string& s) {
  PutNumber(out, static_cast<uint32_t>(s.size()));
  out += s;
}

void EncodeInto(std::string& out, const KeyTree& tree) {
  for (const auto& v : tree.values) {
    out += 'V';
    PutText(out, v.name);
    PutNumber(out, static_cast<uint32_t>(v.type));
    PutText(out, v.bytes);
  }
  for (const auto& [name, child] : tree.subkeys) {
    out += 'K';
    PutText(out, name);
    EncodeInto(out, child);
  }
  out += 'E';
}

struct Reader {
  std::string_view text;
  size_t at = 0;
  bool Number(uint32_t& n) {
    if (text.size() - at < sizeof n) return false;
    std::memcpy(&n, text.data() + at, sizeof n);
    at += sizeof n;
    return true;
  }
  bool Text(std::string& s) {
    uint32_t n = 0;
    if (!Number(n) || text.size() - at < n) return false;
    s.assign(text.substr(at, n));
    at += n;
    return true;
  }
  bool Tree(KeyTree& tree, int depth) {
    if (depth > 64) return false;
    while (at < text.size()) {
      const char tag = text[at++];
      if (tag == 'E') return true;
      if (tag == 'V') {
        KeyTree::Value v;
        uint32_t type = 0;
        if (!Text(v.name) || !Number(type) || !Text(v.bytes)) return false;
        v.type = type;
        tree.values.push_back(std::move(v));
      } else if (tag == 'K') {
        std::pair<std::string, KeyTree> child;
        if (!Text(child.first) || !Tree(child.second, depth + 1)) return false;
        tree.subkeys.push_back(std::move(child));
      } else {
        return false;
      }
    }
    return false;
  }
};

}  // namespace

std::string EncodeKeyTree(const KeyTree& tree) {
  std::string out;
  EncodeInto(out, tree);
  return out;
}

bool DecodeKeyTree(std::string_view text, KeyTree& tree) {
  tree = KeyTree{};
  Reader r{text};
  return r.Tree(tree, 0) && r.at == text.size();
}

void SetStepHook(StepHook hook) { Hook() = std::move(hook); }

ApplyResult Execute(const Plan& plan) {
  ApplyResult result;
  std::vector<Plan> fragments;
  fragments.reserve(plan.size());
  Plan repeat;
  for (size_t i = 0; i < plan.size(); ++i) {
    const Step& step = plan[i];
    Plan undo;
    try {
      if (Hook()) Hook()(step, i);
      undo = UndoFor(step, repeat);
      const bool ok = Perform(step, &undo);
      fragments.push_back(std::move(undo));
      if (!ok) result.failures.push_back({i, step, "the write failed"});
    } catch (...) {
      fragments.push_back(std::move(undo));
      result.failures.push_back({i, step, Reason(std::current_exception())});
      if (!step.skipOnError) {
        result.stopped = true;
        break;
      }
    }
  }
  for (auto it = fragments.rbegin(); it != fragments.rend(); ++it) Append(result.undo.plan, *it);
  Append(result.undo.plan, repeat);
  return result;
}

std::vector<StepFailure> Run(const Plan& plan) {
  std::vector<StepFailure> failures;
  for (size_t i = 0; i < plan.size(); ++i) {
    try {
      if (Hook()) Hook()(plan[i], i);
      if (!Perform(plan[i], nullptr)) failures.push_back({i, plan[i], "the write failed"});
    } catch (...) {
      failures.push_back({i, plan[i], Reason(std::current_exception())});
    }
  }
  return failures;
}

}  // namespace vx
