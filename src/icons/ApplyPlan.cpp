#include "icons/ApplyPlan.h"

#include <cstdio>

#include "registry/modRegistry.h"

namespace vx {
namespace {

// Control characters (a binary zero, a line feed) would break the one-line form: show them as \xNN.
std::string Quote(const std::string& s) {
  std::string out = "\"";
  for (unsigned char c : s) {
    if (c < 0x20) {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\x%02X", c);
      out += buf;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out + "\"";
}

std::string Hex(const std::string& bytes) {
  std::string out;
  for (unsigned char c : bytes) {
    char buf[4];
    std::snprintf(buf, sizeof buf, "%02X", c);
    if (!out.empty()) out += ' ';
    out += buf;
  }
  return out;
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

// The steps that put back what one step is about to change; read before the step runs.
Plan UndoFor(const Step& step, bool& exact) {
  switch (step.kind) {
    case StepKind::SetString:
    case StepKind::SetDword:
    case StepKind::SetRaw:
    case StepKind::SetBinary: {
      // The value first: once Apply has run, it is there nearly always, and one read settles it.
      DWORD type = REG_NONE;
      std::string bytes;
      if (modRegistry::ReadValue(step.key, step.value, type, bytes))
        return {SetRaw(step.key, step.value, type, bytes)};
      if (modRegistry::KeyExists(step.key)) return {DeleteValue(step.key, step.value)};
      // SaveBinary does not create keys, so it leaves nothing to take back here.
      if (step.kind == StepKind::SetBinary) return {};
      return RemoveCreatedKeys(step.key);
    }
    case StepKind::DeleteValue: {
      DWORD type = REG_NONE;
      std::string bytes;
      if (modRegistry::ReadValue(step.key, step.value, type, bytes))
        return {SetRaw(step.key, step.value, type, bytes)};
      return {};
    }
    case StepKind::DeleteKey: {
      const std::string path = step.key + "\\" + step.value;
      if (!modRegistry::KeyExists(path)) return {};
      exact = false;  // its values and subkeys are not recorded
      return {CreateKey(path)};
    }
    case StepKind::CreateKey:
      return RemoveCreatedKeys(step.key);
    case StepKind::SystemParameter:
    case StepKind::Broadcast:
      return {};
  }
  return {};
}

void Perform(const Step& step) {
  switch (step.kind) {
    case StepKind::SetString:
      modRegistry::SaveString(step.key, step.value, step.text);
      break;
    case StepKind::SetDword:
      modRegistry::SaveDword(step.key, step.value, step.number);
      break;
    case StepKind::SetBinary:
      modRegistry::SaveBinary(step.key, step.value, step.text);
      break;
    case StepKind::SetRaw:
      modRegistry::WriteValue(step.key, step.value, step.rawType, step.text);
      break;
    case StepKind::DeleteValue:
      modRegistry::DeleteValue(step.key, step.value);
      break;
    case StepKind::DeleteKey:
      modRegistry::DeleteKey(step.key, step.value);
      break;
    case StepKind::CreateKey:
      modRegistry::CreateKey(step.key);
      break;
    case StepKind::SystemParameter: {
      // The call may write through pvParam, so it gets a copy of its own.
      std::string buffer = step.pvData.value_or(std::string());
      SystemParametersInfoA(step.action, step.uiParam, step.pvData ? buffer.data() : nullptr, step.flags);
      break;
    }
    case StepKind::Broadcast:
      SendMessageA(HWND_BROADCAST, step.message, step.wParam, step.lParam);
      break;
  }
}

}  // namespace

namespace {
Step RegistryStep(StepKind kind, const std::string& key, const std::string& value, const std::string& text = "") {
  Step s;
  s.kind = kind;
  s.key = key;
  s.value = value;
  s.text = text;
  return s;
}
}  // namespace

Step SetString(const std::string& key, const std::string& value, const std::string& text) {
  return RegistryStep(StepKind::SetString, key, value, text);
}

Step SetDword(const std::string& key, const std::string& value, int32_t number) {
  Step s = RegistryStep(StepKind::SetDword, key, value);
  s.number = number;
  return s;
}

Step SetBinary(const std::string& key, const std::string& value, const std::string& bytes) {
  Step s = SetString(key, value, bytes);
  s.kind = StepKind::SetBinary;
  return s;
}

Step SetRaw(const std::string& key, const std::string& value, DWORD type, const std::string& bytes) {
  Step s = SetString(key, value, bytes);
  s.kind = StepKind::SetRaw;
  s.rawType = type;
  return s;
}

Step DeleteValue(const std::string& key, const std::string& value) {
  return RegistryStep(StepKind::DeleteValue, key, value);
}

Step DeleteKey(const std::string& parentKey, const std::string& subkey) {
  return RegistryStep(StepKind::DeleteKey, parentKey, subkey);
}

Step CreateKey(const std::string& key) { return RegistryStep(StepKind::CreateKey, key, ""); }

Step SystemParameter(UINT action, UINT uiParam, UINT flags, std::optional<std::string> pvData) {
  Step s;
  s.kind = StepKind::SystemParameter;
  s.action = action;
  s.uiParam = uiParam;
  s.flags = flags;
  s.pvData = std::move(pvData);
  return s;
}

Step Broadcast(WPARAM wParam, LPARAM lParam, UINT message) {
  Step s;
  s.kind = StepKind::Broadcast;
  s.message = message;
  s.wParam = wParam;
  s.lParam = lParam;
  return s;
}

bool IsNotification(const Step& step) {
  return step.kind == StepKind::SystemParameter || step.kind == StepKind::Broadcast;
}

std::string Describe(const Step& s) {
  const std::string where = Quote(s.key) + " " + Quote(s.value);
  switch (s.kind) {
    case StepKind::SetString:
      return "set string " + where + " = " + Quote(s.text);
    case StepKind::SetDword:
      return "set dword " + where + " = " + std::to_string(s.number);
    case StepKind::SetBinary:
      return "set binary " + where + " = " + Hex(s.text);
    case StepKind::SetRaw:
      return "set raw " + where + " type " + std::to_string(s.rawType) + " = " + Hex(s.text);
    case StepKind::DeleteValue:
      return "delete value " + where;
    case StepKind::DeleteKey:
      return "delete key " + where;
    case StepKind::CreateKey:
      return "create key " + Quote(s.key);
    case StepKind::SystemParameter:
      return "system parameter " + std::to_string(s.action) + " " + std::to_string(s.uiParam) + " " +
             (s.pvData ? Quote(*s.pvData) : std::string("null")) + " " + std::to_string(s.flags);
    case StepKind::Broadcast:
      return "broadcast " +
             (s.message == WM_SETTINGCHANGE ? std::string("WM_SETTINGCHANGE") : std::to_string(s.message)) +
             " " + std::to_string(s.wParam) + " " + std::to_string(s.lParam);
  }
  return {};
}

std::vector<std::string> Describe(const Plan& plan) {
  std::vector<std::string> lines;
  lines.reserve(plan.size());
  for (const Step& s : plan) lines.push_back(Describe(s));
  return lines;
}

UndoRecord Execute(const Plan& plan) {
  std::vector<Plan> fragments;
  fragments.reserve(plan.size());
  UndoRecord undo;
  for (const Step& step : plan) {
    fragments.push_back(UndoFor(step, undo.exact));
    Perform(step);
  }
  for (auto it = fragments.rbegin(); it != fragments.rend(); ++it)
    undo.plan.insert(undo.plan.end(), it->begin(), it->end());
  for (const Step& step : plan)
    if (IsNotification(step)) undo.plan.push_back(step);
  return undo;
}

void Run(const Plan& plan) {
  for (const Step& step : plan) Perform(step);
}

}  // namespace vx
