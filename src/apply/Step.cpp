#include "apply/Step.h"

#include <cstdio>

#include "registry/modCommon.h"

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

Step PutKeyTree(const std::string& key, const std::string& encodedTree) {
  return RegistryStep(StepKind::PutKeyTree, key, "", encodedTree);
}

Step CreateFolder(const std::string& path) { return RegistryStep(StepKind::CreateFolder, path, ""); }
Step RemoveFolder(const std::string& path) { return RegistryStep(StepKind::RemoveFolder, path, ""); }

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

void Append(Plan& plan, const Plan& more) { plan.insert(plan.end(), more.begin(), more.end()); }

Plan Skippable(Plan plan) {
  for (Step& s : plan) s.skipOnError = true;
  return plan;
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
      return "set binary " + where + " = " + HexBytes(s.text);
    case StepKind::SetRaw:
      return "set raw " + where + " type " + std::to_string(s.rawType) + " = " + HexBytes(s.text);
    case StepKind::DeleteValue:
      return "delete value " + where;
    case StepKind::DeleteKey:
      return "delete key " + where;
    case StepKind::CreateKey:
      return "create key " + Quote(s.key);
    case StepKind::PutKeyTree:
      return "put key tree " + Quote(s.key) + " = " + HexBytes(s.text);
    case StepKind::CreateFolder:
      return "create folder " + Quote(s.key);
    case StepKind::RemoveFolder:
      return "remove folder " + Quote(s.key);
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

}  // namespace vx
