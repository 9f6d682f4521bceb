#include "apply/Journal.h"

#include <windows.h>
#include <shlobj.h>

#include "apply/Codec.h"
#include "registry/LaterApi.h"

namespace vx {
namespace {

constexpr char kMagic[] = "VXJ1";
constexpr char kDone = 'D', kComplete = 'C', kExtend = 'X';

void PutStep(std::string& out, const Step& s) {
  using namespace codec;
  PutNumber(out, static_cast<uint32_t>(s.kind));
  PutText(out, s.key);
  PutText(out, s.value);
  PutText(out, s.text);
  PutNumber(out, static_cast<uint32_t>(s.number));
  PutNumber(out, s.rawType);
  PutNumber(out, s.action);
  PutNumber(out, s.uiParam);
  PutNumber(out, s.pvData ? 1 : 0);
  PutText(out, s.pvData.value_or(""));
  PutNumber(out, s.flags);
  PutNumber(out, s.message);
  PutNumber(out, static_cast<uint32_t>(s.wParam));
  PutNumber(out, static_cast<uint32_t>(s.lParam));
  PutNumber(out, s.skipOnError ? 1 : 0);
  PutText(out, s.label);
}

bool GetStep(codec::Reader& r, Step& s) {
  uint32_t kind = 0, hasData = 0, skip = 0, wParam = 0, lParam = 0;
  std::string data;
  if (!r.Number(kind) || kind > static_cast<uint32_t>(StepKind::Broadcast)) return false;
  s.kind = static_cast<StepKind>(kind);
  if (!r.Text(s.key) || !r.Text(s.value) || !r.Text(s.text) || !r.Number(s.number) || !r.Number(s.rawType) ||
      !r.Number(s.action) || !r.Number(s.uiParam) || !r.Number(hasData) || !r.Text(data) || !r.Number(s.flags) ||
      !r.Number(s.message) || !r.Number(wParam) || !r.Number(lParam) || !r.Number(skip) || !r.Text(s.label))
    return false;
  if (hasData) s.pvData = std::move(data);
  s.wParam = wParam;
  s.lParam = static_cast<LPARAM>(static_cast<int32_t>(lParam));
  s.skipOnError = skip != 0;
  return true;
}

void PutPlan(std::string& out, const Plan& plan) {
  codec::PutNumber(out, static_cast<uint32_t>(plan.size()));
  for (const Step& s : plan) PutStep(out, s);
}

bool GetPlan(codec::Reader& r, Plan& plan) {
  uint32_t n = 0;
  if (!r.Number(n) || n > r.text.size()) return false;  // every step takes more than a byte
  plan.assign(n, Step{});
  for (Step& s : plan)
    if (!GetStep(r, s)) return false;
  return true;
}

std::string ReadWhole(const std::string& path) {
  HANDLE f = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (f == INVALID_HANDLE_VALUE) return {};
  std::string bytes;
  uint64_t size = 0;
  if (later::FileSize(f, size) && size > 0 && size < (256 << 20)) {
    bytes.resize(static_cast<size_t>(size));
    DWORD got = 0;
    if (!ReadFile(f, bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr)) got = 0;
    bytes.resize(got);
  }
  CloseHandle(f);
  return bytes;
}

}  // namespace

std::string EncodePlan(const Plan& plan) {
  std::string out;
  PutPlan(out, plan);
  return out;
}

bool DecodePlan(const std::string& text, Plan& plan) {
  codec::Reader r{text};
  return GetPlan(r, plan) && r.AtEnd();
}

Journal::~Journal() {
  if (file_) CloseHandle(file_);
}

bool Journal::Begin(const Plan& plan, const Plan& undo) {
  if (file_) CloseHandle(file_);
  file_ = nullptr;
  // The folder is made with the first journal, not before: a program that never applied leaves nothing.
  const auto slash = path_.rfind('\\');
  if (slash != std::string::npos) CreateDirectoryA(path_.substr(0, slash).c_str(), nullptr);
  HANDLE f = CreateFileA(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (f == INVALID_HANDLE_VALUE) return false;
  file_ = f;
  std::string head(kMagic, 4);
  head += static_cast<char>(kind_);
  PutPlan(head, plan);
  PutPlan(head, undo);
  Append(head, true);
  return true;
}

void Journal::Done(size_t step) {
  std::string mark(1, kDone);
  codec::PutNumber(mark, static_cast<uint32_t>(step));
  Append(mark, false);  // a killed program still leaves it in the file; a power failure may lose it, harmlessly
}

void Journal::Extend(const Plan& undoFirst) {
  std::string more(1, kExtend);
  PutPlan(more, undoFirst);
  Append(more, true);
}

void Journal::Complete() {
  // Not flushed: a killed program still leaves the mark in the file, and should a power failure lose
  // it, the next start merely offers to put back an Apply that had finished.
  Append(std::string(1, kComplete), false);
  CloseHandle(file_);
  file_ = nullptr;
}

void Journal::Append(const std::string& bytes, bool flush) {
  if (!file_) return;
  DWORD written = 0;
  WriteFile(file_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (flush) FlushFileBuffers(file_);
}

std::optional<JournalRecord> ReadJournal(const std::string& path) {
  const std::string bytes = ReadWhole(path);
  if (bytes.size() < 5 || bytes.compare(0, 4, kMagic, 4) != 0) return std::nullopt;
  JournalRecord rec;
  if (bytes[4] != Journal::kApply && bytes[4] != Journal::kUndo) return std::nullopt;
  rec.kind = static_cast<Journal::Kind>(bytes[4]);
  codec::Reader r{bytes, 5};
  if (!GetPlan(r, rec.plan) || !GetPlan(r, rec.undo)) return std::nullopt;
  rec.done.assign(rec.plan.size(), false);
  char tag = 0;
  while (r.Tag(tag)) {
    uint32_t step = 0;
    Plan first;
    if (tag == kComplete) {
      rec.complete = true;
    } else if (tag == kExtend && GetPlan(r, first)) {
      rec.undo.insert(rec.undo.begin(), first.begin(), first.end());
    } else if (tag == kDone && r.Number(step)) {
      if (step < rec.done.size()) rec.done[step] = true;
    } else {
      break;  // a mark cut short by the end of the run: what came before stands
    }
  }
  return rec;
}

void CompleteJournal(const std::string& path) {
  HANDLE f = CreateFileA(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (f == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(f, &kComplete, 1, &written, nullptr);
  FlushFileBuffers(f);
  CloseHandle(f);
}

std::string JournalPath() {
  std::string dir = later::AppDataFolder(true);  // made where missing, as Windows 95 may lack it
  if (dir.empty()) {
    char temp[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, temp);
    dir = temp;
  }
  if (!dir.empty() && dir.back() == '\\') dir.pop_back();
  return dir + "\\Vexillor\\apply.journal";
}

}  // namespace vx
