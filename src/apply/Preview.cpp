#include "apply/Preview.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

#include "registry/modCommon.h"
#include "registry/modRegistry.h"

namespace vx {
namespace {

constexpr const char* kNone = "(none)";

std::string Quoted(const std::string& text) {
  std::string out(1, '"');
  out += StripNull(text);
  out += '"';
  return out;
}

// A registry value as a person reads it: texts quoted, numbers in decimal, other data in hex.
std::string Shown(DWORD type, const std::string& bytes) {
  switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ: return Quoted(bytes);
    case REG_DWORD:
      if (bytes.size() == 4) {
        int32_t n = 0;
        std::memcpy(&n, bytes.data(), 4);
        return std::to_string(n);
      }
      return HexBytes(bytes);
    default: return HexBytes(bytes);
  }
}

std::string ValueWhere(const Step& s) { return s.key + " : " + (s.value.empty() ? "(default)" : s.value); }

bool Changes(const Step& s) {
  return !(s.kind == StepKind::Broadcast || (s.kind == StepKind::SystemParameter && s.action == SPI_SETCURSORS));
}

std::string Now(const Step& s) {
  switch (s.kind) {
    case StepKind::SetString:
    case StepKind::SetDword:
    case StepKind::SetBinary:
    case StepKind::SetRaw:
    case StepKind::DeleteValue: {
      DWORD type = REG_NONE;
      std::string bytes;
      return modRegistry::ReadValue(s.key, s.value, type, bytes) ? Shown(type, bytes) : kNone;
    }
    case StepKind::DeleteKey: return modRegistry::KeyExists(s.key + "\\" + s.value) ? "(key)" : kNone;
    case StepKind::CreateKey:
    case StepKind::PutKeyTree: return modRegistry::KeyExists(s.key) ? "(key)" : kNone;
    case StepKind::CreateFolder:
    case StepKind::RemoveFolder: {
      const DWORD a = GetFileAttributesA(s.key.c_str());
      return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY) ? "(folder)" : kNone;
    }
    default: return "";
  }
}

}  // namespace

PreviewLine PreviewOf(const Step& s) {
  PreviewLine line;
  line.change = s.label;
  switch (s.kind) {
    case StepKind::SetString: line.where = ValueWhere(s), line.after = Quoted(s.text); break;
    case StepKind::SetDword: line.where = ValueWhere(s), line.after = std::to_string(s.number); break;
    case StepKind::SetBinary: line.where = ValueWhere(s), line.after = HexBytes(s.text); break;
    case StepKind::SetRaw: line.where = ValueWhere(s), line.after = Shown(s.rawType, s.text); break;
    case StepKind::DeleteValue: line.where = ValueWhere(s), line.after = "(deleted)"; break;
    case StepKind::DeleteKey: line.where = s.key + "\\" + s.value, line.after = "(deleted with its contents)"; break;
    case StepKind::CreateKey: line.where = s.key, line.after = "(key)"; break;
    case StepKind::PutKeyTree: line.where = s.key, line.after = "(key put back)"; break;
    case StepKind::CreateFolder: line.where = s.key, line.after = "(folder)"; break;
    case StepKind::RemoveFolder: line.where = s.key, line.after = "(removed)"; break;
    case StepKind::SystemParameter:
      line.where = "system parameter " + std::to_string(s.action);
      line.after = s.pvData ? Quoted(*s.pvData) : std::to_string(s.uiParam);
      break;
    case StepKind::Broadcast: line.where = "broadcast", line.after = std::to_string(s.wParam); break;
  }
  return line;
}

std::vector<PreviewLine> Preview(const Plan& plan) {
  std::vector<PreviewLine> lines;
  for (const Step& s : plan) {
    if (!Changes(s)) continue;
    PreviewLine line = PreviewOf(s);
    line.now = Now(s);
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace vx
