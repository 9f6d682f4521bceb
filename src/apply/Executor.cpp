#include "apply/Executor.h"

#include "apply/Journal.h"

#include "apply/Codec.h"

#include <cstring>
#include <exception>
#include <map>
#include <set>


namespace vx {
namespace {

using modRegistry::KeyTree;

constexpr UINT kBroadcastTimeoutMs = 3000;

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

// What undoes a step that changes one value, from what the value holds now.
Plan UndoOfValue(const Step& step, const modRegistry::Previous& previous) {
  using modRegistry::Previous;
  switch (previous.state) {
    case Previous::Value: return {SetRaw(step.key, step.value, previous.type, previous.bytes)};
    case Previous::KeyOnly:
      return step.kind == StepKind::DeleteValue ? Plan{} : Plan{DeleteValue(step.key, step.value)};
    case Previous::NoKey: {
      // SaveBinary does not create keys, and deleting from a missing key leaves nothing to take back.
      if (step.kind == StepKind::SetBinary || step.kind == StepKind::DeleteValue) return {};
      Plan steps;
      for (const std::string& k : previous.createdKeys)
        if (!modRegistry::IsSharedKey(k)) steps.push_back(DeleteKey(ParentOf(k), LeafOf(k)));
      return steps;
    }
  }
  return {};
}

bool ChangesOneValue(const Step& s) {
  switch (s.kind) {
    case StepKind::SetString:
    case StepKind::SetDword:
    case StepKind::SetRaw:
    case StepKind::SetBinary:
    case StepKind::DeleteValue: return true;
    default: return false;
  }
}

// What undoes any other step. Notifications that cannot be read back are repeated instead, once
// everything else is back (`repeat`).
Plan UndoOfOther(const Step& step, bool& repeat) {
  switch (step.kind) {
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
      repeat = true;
      return {};
    case StepKind::Broadcast:
      repeat = true;
      return {};
    default:
      return {};
  }
}

// What undoes each step, all read before any of them runs (so a journal can hold it before the first
// write). The values a plan changes are read one key at a time, with one open for all of a key's values.
UndoParts Capture(const Plan& plan) {
  UndoParts c{std::vector<Plan>(plan.size()), std::vector<bool>(plan.size())};
  std::map<std::string, std::vector<size_t>> byKey;
  for (size_t i = 0; i < plan.size(); ++i) {
    if (ChangesOneValue(plan[i])) {
      byKey[plan[i].key].push_back(i);
    } else {
      bool repeat = false;
      c.fragments[i] = UndoOfOther(plan[i], repeat);
      c.repeat[i] = repeat;
    }
  }
  for (const auto& [key, steps] : byKey) {
    std::vector<std::string> names;
    for (size_t i : steps) names.push_back(plan[i].value);
    const std::vector<modRegistry::Previous> previous = modRegistry::ReadPrevious(key, names);
    for (size_t j = 0; j < steps.size(); ++j) c.fragments[steps[j]] = UndoOfValue(plan[steps[j]], previous[j]);
  }
  // A key that several steps would create is taken back by the first of them alone (its undo runs
  // last, after the later steps' keys below it are gone); a second deletion would find it still
  // holding those subkeys and fail.
  std::set<std::string> created;
  for (Plan& fragment : c.fragments)
    std::erase_if(fragment, [&](const Step& s) {
      return s.kind == StepKind::DeleteKey && !created.insert(s.key + "\\" + s.value).second;
    });
  return c;
}

std::string Dword(int32_t n) {
  const DWORD data = static_cast<DWORD>(n);
  return std::string(reinterpret_cast<const char*>(&data), sizeof data);
}

// Carries out one step; false when it failed. Value writes go through the writer, which keeps a key
// open while consecutive steps write to it.
bool Perform(const Step& step, modRegistry::Writer& writer) {
  switch (step.kind) {
    case StepKind::SetString:
      return writer.Set(step.key, step.value, REG_SZ, step.text);
    case StepKind::SetDword:
      return writer.Set(step.key, step.value, REG_DWORD, Dword(step.number));
    case StepKind::SetRaw:
      return writer.Set(step.key, step.value, step.rawType, step.text);
    default:
      break;
  }
  writer.Close();
  switch (step.kind) {
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
    case StepKind::Broadcast: {
      // A window that does not answer is passed over after a few seconds, not waited for.
      DWORD_PTR answer = 0;
      SendMessageTimeoutA(HWND_BROADCAST, step.message, step.wParam, step.lParam, SMTO_ABORTIFHUNG | SMTO_NORMAL,
                          kBroadcastTimeoutMs, &answer);
      return true;
    }
    case StepKind::SetString:
    case StepKind::SetDword:
    case StepKind::SetRaw:
      break;  // written above
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

// --- key tree text: "V" name type bytes | "K" name tree | "E".

void EncodeInto(std::string& out, const KeyTree& tree) {
  for (const auto& v : tree.values) {
    out += 'V';
    codec::PutText(out, v.name);
    codec::PutNumber(out, static_cast<uint32_t>(v.type));
    codec::PutText(out, v.bytes);
  }
  for (const auto& [name, child] : tree.subkeys) {
    out += 'K';
    codec::PutText(out, name);
    EncodeInto(out, child);
  }
  out += 'E';
}

bool DecodeFrom(codec::Reader& r, KeyTree& tree, int depth) {
  if (depth > 64) return false;
  char tag = 0;
  while (r.Tag(tag)) {
    if (tag == 'E') return true;
    if (tag == 'V') {
      KeyTree::Value v;
      if (!r.Text(v.name) || !r.Number(v.type) || !r.Text(v.bytes)) return false;
      tree.values.push_back(std::move(v));
    } else if (tag == 'K') {
      std::pair<std::string, KeyTree> child;
      if (!r.Text(child.first) || !DecodeFrom(r, child.second, depth + 1)) return false;
      tree.subkeys.push_back(std::move(child));
    } else {
      return false;
    }
  }
  return false;
}

}  // namespace

std::string EncodeKeyTree(const KeyTree& tree) {
  std::string out;
  EncodeInto(out, tree);
  return out;
}

bool DecodeKeyTree(std::string_view text, KeyTree& tree) {
  tree = KeyTree{};
  codec::Reader r{text};
  return DecodeFrom(r, tree, 0) && r.AtEnd();
}

void SetStepHook(StepHook hook) { Hook() = std::move(hook); }

Plan PutBackLater(const std::string& key, const std::string& value) {
  return UndoOfValue(SetString(key, value, ""), modRegistry::ReadPrevious(key, {value})[0]);
}

ApplyResult Execute(const Plan& plan, Journal* journal, const StopCheck& stop) {
  if (plan.empty()) return {};
  const UndoParts parts = Capture(plan);
  if (journal && !journal->Begin(plan, parts) && !(journal->goOnWithout && journal->goOnWithout())) {
    ApplyResult result;
    result.notStarted = true;
    return result;
  }
  return ExecuteFrom(plan, parts, 0, journal, stop);
}

ApplyResult ExecuteFrom(const Plan& plan, const UndoParts& parts, size_t first, Journal* journal,
                        const StopCheck& stop) {
  ApplyResult result;
  if (first >= plan.size()) return result;
  modRegistry::Writer writer;
  size_t last = first;
  for (size_t i = first; i < plan.size(); ++i) {
    // Between two steps the journal is consistent: a run asked to end stops here.
    if (i > first && stop && stop()) {
      result.stopped = true;
      result.interrupted = true;
      break;
    }
    const Step& step = plan[i];
    last = i;
    bool stops = false;
    try {
      if (Hook()) Hook()(step, i);
      if (!Perform(step, writer)) result.failures.push_back({i, step, "the write failed"});
    } catch (...) {
      result.failures.push_back({i, step, Reason(std::current_exception())});
      stops = !step.skipOnError;
    }
    if (journal) journal->Done(i);
    if (stops) {
      result.stopped = true;
      break;
    }
  }
  writer.Close();
  // A run that ends here, stopped or not, is finished: the caller marks its journal complete.
  result.undo.plan = parts.UndoUpTo(plan, last);
  return result;
}

std::vector<StepFailure> Run(const Plan& plan) {
  std::vector<StepFailure> failures;
  modRegistry::Writer writer;
  for (size_t i = 0; i < plan.size(); ++i) {
    try {
      if (Hook()) Hook()(plan[i], i);
      if (!Perform(plan[i], writer)) failures.push_back({i, plan[i], "the write failed"});
    } catch (...) {
      failures.push_back({i, plan[i], Reason(std::current_exception())});
    }
  }
  return failures;
}

}  // namespace vx
