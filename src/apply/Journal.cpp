#include "apply/Journal.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>

#include "apply/Codec.h"
#include "registry/LaterApi.h"
#include "registry/modRegistry.h"

namespace vx {
namespace {

// File: records, each tag, payload length, payload, checksum of the three. The first is the header;
// the second holds the marks, one byte per step (1 once it has run), set through a view of the file so
// that marking a step costs no call; it has no checksum, as it changes, and a byte that is neither 0
// nor 1 ends it. A power cut's zeros read as steps not done.
constexpr char kMagic[] = "VXJ2";
constexpr uint32_t kVersion = 2;
constexpr char kHeader = 'H', kMarks = 'M', kDone = 'D', kComplete = 'C', kExtend = 'X';
constexpr size_t kMinStepBytes = 4 + 4 + 4 + 4 + 1;  // kind, three texts' lengths, skip flag

uint32_t Checksum(std::string_view bytes) {
  uint32_t h = 2166136261u;  // FNV-1a
  for (unsigned char c : bytes) h = (h ^ c) * 16777619u;
  return h;
}

std::string Record(char tag, const std::string& payload) {
  std::string out(1, tag);
  codec::PutNumber(out, static_cast<uint32_t>(payload.size()));
  out += payload;
  codec::PutNumber(out, Checksum(out));
  return out;
}

// The next record of a file, or false at its end or at the first one that is cut short or damaged.
bool NextRecord(codec::Reader& r, char& tag, std::string_view& payload) {
  const size_t start = r.at;
  uint32_t size = 0, sum = 0;
  if (!r.Tag(tag) || !r.Number(size) || r.text.size() - r.at < size) return false;
  payload = r.text.substr(r.at, size);
  r.at += size;
  if (!r.Number(sum)) return false;
  return sum == Checksum(r.text.substr(start, 1 + 4 + size));
}

// --- steps: the fields every kind has, then the kind's own.

void PutStep(std::string& out, const Step& s) {
  using namespace codec;
  PutNumber(out, static_cast<uint32_t>(s.kind));
  PutText(out, s.key);
  PutText(out, s.value);
  PutText(out, s.label);
  out += s.skipOnError ? '\1' : '\0';
  switch (s.kind) {
    case StepKind::SetString:
    case StepKind::SetBinary:
    case StepKind::PutKeyTree: PutText(out, s.text); break;
    case StepKind::SetDword: PutNumber(out, static_cast<uint32_t>(s.number)); break;
    case StepKind::SetRaw:
      PutNumber(out, s.rawType);
      PutText(out, s.text);
      break;
    case StepKind::SystemParameter:
      PutNumber(out, s.action);
      PutNumber(out, s.uiParam);
      PutNumber(out, s.flags);
      out += s.pvData ? '\1' : '\0';
      if (s.pvData) PutText(out, *s.pvData);
      break;
    case StepKind::Broadcast:
      PutNumber(out, s.message);
      PutNumber(out, static_cast<uint32_t>(s.wParam));
      PutNumber(out, static_cast<uint32_t>(s.lParam));
      break;
    case StepKind::DeleteValue:
    case StepKind::DeleteKey:
    case StepKind::CreateKey:
    case StepKind::CreateFolder:
    case StepKind::RemoveFolder: break;
  }
}

bool GetFlag(codec::Reader& r, bool& flag) {
  char c = 0;
  if (!r.Tag(c) || (c != 0 && c != 1)) return false;
  flag = c != 0;
  return true;
}

bool GetStep(codec::Reader& r, Step& s) {
  uint32_t kind = 0;
  if (!r.Number(kind) || kind > static_cast<uint32_t>(StepKind::Broadcast)) return false;
  s = Step{};
  s.kind = static_cast<StepKind>(kind);
  if (!r.Text(s.key) || !r.Text(s.value) || !r.Text(s.label) || !GetFlag(r, s.skipOnError)) return false;
  switch (s.kind) {
    case StepKind::SetString:
    case StepKind::SetBinary:
    case StepKind::PutKeyTree: return r.Text(s.text);
    case StepKind::SetDword: return r.Number(s.number);
    case StepKind::SetRaw: return r.Number(s.rawType) && r.Text(s.text);
    case StepKind::SystemParameter: {
      bool hasData = false;
      if (!r.Number(s.action) || !r.Number(s.uiParam) || !r.Number(s.flags) || !GetFlag(r, hasData)) return false;
      if (!hasData) return true;
      std::string data;
      if (!r.Text(data)) return false;
      s.pvData = std::move(data);
      return true;
    }
    case StepKind::Broadcast: {
      uint32_t wParam = 0, lParam = 0;
      if (!r.Number(s.message) || !r.Number(wParam) || !r.Number(lParam)) return false;
      s.wParam = wParam;
      s.lParam = static_cast<LPARAM>(static_cast<int32_t>(lParam));
      return true;
    }
    case StepKind::DeleteValue:
    case StepKind::DeleteKey:
    case StepKind::CreateKey:
    case StepKind::CreateFolder:
    case StepKind::RemoveFolder: return true;
  }
  return false;
}

void PutPlan(std::string& out, const Plan& plan) {
  codec::PutNumber(out, static_cast<uint32_t>(plan.size()));
  for (const Step& s : plan) PutStep(out, s);
}

// A count is believed only as far as the bytes that remain could hold that many steps.
bool GetPlan(codec::Reader& r, Plan& plan) {
  uint32_t n = 0;
  if (!r.Number(n) || n > kMaxJournalSteps || n > (r.text.size() - r.at) / kMinStepBytes) return false;
  plan.assign(n, Step{});
  for (Step& s : plan)
    if (!GetStep(r, s)) return false;
  return true;
}

std::string Header(uint32_t sequence, char kind, const Plan& plan, const UndoParts& parts) {
  std::string head(kMagic, 4);
  codec::PutNumber(head, kVersion);
  codec::PutNumber(head, sequence);
  head += kind;
  PutPlan(head, plan);
  for (size_t i = 0; i < plan.size(); ++i) {
    PutPlan(head, i < parts.fragments.size() ? parts.fragments[i] : Plan{});
    head += i < parts.repeat.size() && parts.repeat[i] ? '\1' : '\0';
  }
  return head;
}

bool GetHeader(std::string_view payload, JournalRecord& rec) {
  codec::Reader r{payload};
  uint32_t version = 0;
  char kind = 0;
  if (payload.size() < 4 || payload.compare(0, 4, kMagic, 4) != 0) return false;
  r.at = 4;
  if (!r.Number(version) || version != kVersion || !r.Number(rec.sequence) || !r.Tag(kind)) return false;
  if (kind != JournalRecord::kApply && kind != JournalRecord::kUndo) return false;
  rec.kind = static_cast<JournalRecord::Kind>(kind);
  if (!GetPlan(r, rec.plan)) return false;
  rec.parts.fragments.assign(rec.plan.size(), Plan{});
  rec.parts.repeat.assign(rec.plan.size(), false);
  size_t total = 0;
  for (size_t i = 0; i < rec.plan.size(); ++i) {
    bool repeat = false;
    if (!GetPlan(r, rec.parts.fragments[i]) || !GetFlag(r, repeat)) return false;
    if ((total += rec.parts.fragments[i].size()) > kMaxJournalSteps) return false;
    rec.parts.repeat[i] = repeat;
  }
  rec.done.assign(rec.plan.size(), false);
  return r.AtEnd();
}

std::string ReadWhole(const std::string& path, bool& tooLarge) {
  tooLarge = false;
  HANDLE f = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (f == INVALID_HANDLE_VALUE) return {};
  std::string bytes;
  DWORD high = 0;
  const DWORD size = GetFileSize(f, &high);
  if (size == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) {
    // unreadable: nothing
  } else if (high != 0 || size > kMaxJournalBytes) {
    tooLarge = true;
  } else if (size > 0) {
    bytes.resize(size);
    DWORD got = 0;
    if (!ReadFile(f, bytes.data(), size, &got, nullptr)) got = 0;
    bytes.resize(got);
  }
  CloseHandle(f);
  return bytes;
}

bool FileExists(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// One file read as a journal; false when it is there but is not an intact journal.
bool ReadOneFile(const std::string& file, std::optional<JournalRecord>& out) {
  out.reset();
  if (!FileExists(file)) return true;
  bool tooLarge = false;
  const std::string bytes = ReadWhole(file, tooLarge);
  if (tooLarge) return false;
  if (bytes.empty()) return true;  // made but never written: nothing ran after it
  codec::Reader r{bytes};
  char tag = 0;
  std::string_view payload;
  JournalRecord rec;
  if (!NextRecord(r, tag, payload) || tag != kHeader || !GetHeader(payload, rec)) return false;
  rec.header.assign(payload);
  uint32_t marks = 0;
  if (r.text.size() - r.at >= 5 && r.text[r.at] == kMarks) {
    ++r.at;
    r.Number(marks);
    const size_t have = std::min<size_t>(marks, r.text.size() - r.at);
    for (size_t i = 0; i < have && i < rec.done.size(); ++i) {
      const char c = r.text[r.at + i];
      if (c != 0 && c != 1) break;
      rec.done[i] = c == 1;
    }
    r.at += have;
  }
  while (NextRecord(r, tag, payload)) {
    codec::Reader p{payload};
    uint32_t step = 0;
    Plan first;
    if (tag == kComplete) {
      rec.complete = true;
    } else if (tag == kExtend && GetPlan(p, first) && p.AtEnd()) {
      if (rec.undoFirst.size() + first.size() > kMaxJournalSteps) break;
      rec.undoFirst.insert(rec.undoFirst.begin(), first.begin(), first.end());
    } else if (tag == kDone && p.Number(step) && p.AtEnd() && step < rec.done.size()) {
      rec.done[step] = true;
    } else {
      break;
    }
  }
  out = std::move(rec);
  return true;
}

// The sequence number of a file whose header record is intact, without reading its plan.
std::optional<uint32_t> PeekSequence(const std::string& file) {
  bool tooLarge = false;
  const std::string bytes = ReadWhole(file, tooLarge);
  codec::Reader r{bytes};
  char tag = 0;
  std::string_view payload;
  if (!NextRecord(r, tag, payload) || tag != kHeader || payload.size() < 12 || payload.compare(0, 4, kMagic, 4) != 0)
    return std::nullopt;
  uint32_t sequence = 0;
  std::memcpy(&sequence, payload.data() + 8, sizeof sequence);
  return sequence;
}

}  // namespace

Plan UndoParts::UndoUpTo(const Plan& plan, size_t last) const {
  Plan undo;
  const size_t end = std::min({last + 1, fragments.size(), plan.size()});
  for (size_t i = end; i-- > 0;) Append(undo, fragments[i]);
  for (size_t i = 0; i < end && i < repeat.size(); ++i)
    if (repeat[i]) undo.push_back(plan[i]);
  return undo;
}

std::optional<size_t> JournalRecord::LastReached() const {
  std::optional<size_t> last;
  for (size_t i = 0; i < done.size(); ++i)
    if (done[i]) last = i;
  if (complete || plan.empty()) return last;
  if (!last) return size_t{0};
  return std::min(*last + 1, plan.size() - 1);
}

Plan JournalRecord::Undo() const {
  Plan undo = undoFirst;
  if (const auto last = LastReached()) Append(undo, parts.UndoUpTo(plan, *last));
  return undo;
}

std::string EncodePlan(const Plan& plan) {
  std::string out;
  PutPlan(out, plan);
  return out;
}

bool DecodePlan(const std::string& text, Plan& plan) {
  codec::Reader r{text};
  return GetPlan(r, plan) && r.AtEnd();
}

std::string JournalFile(const std::string& path, int slot) { return path + (slot == 1 ? ".1" : ".2"); }

JournalRead ReadJournalFiles(const std::string& path) {
  JournalRead out;
  for (int slot : {1, 2}) {
    const std::string file = JournalFile(path, slot);
    std::optional<JournalRecord> rec;
    if (!ReadOneFile(file, rec)) {
      out.damaged.push_back(file);
    } else if (rec && (!out.record || rec->sequence > out.record->sequence)) {
      out.record = std::move(rec);
      out.file = file;
    }
  }
  return out;
}

bool JournalVouched(const JournalRecord& record) {
  DWORD type = 0;
  std::string bytes;
  return modRegistry::ReadValue(kJournalVouchKey, "Journal", type, bytes) && type == REG_BINARY &&
         bytes == record.header;
}

std::optional<JournalRecord> ReadJournal(const std::string& path) { return ReadJournalFiles(path).record; }

Journal::~Journal() { Close(); }

void Journal::Close() {
  if (view_) UnmapViewOfFile(view_);
  if (mapping_) CloseHandle(mapping_);
  if (file_) CloseHandle(file_);
  view_ = mapping_ = file_ = nullptr;
}

bool Journal::Start(const std::string& head, size_t steps, bool vouch) {
  Close();
  // The folder is made with the first journal, not before: a program that never applied leaves nothing.
  const auto slash = path_.rfind('\\');
  if (slash != std::string::npos) CreateDirectoryA(path_.substr(0, slash).c_str(), nullptr);
  // The new record goes into the file that does not hold the newest one, which stays whole meanwhile.
  const std::optional<uint32_t> first = PeekSequence(JournalFile(path_, 1)), second = PeekSequence(JournalFile(path_, 2));
  const bool firstNewest = first && (!second || *first > *second);
  const int slot = firstNewest ? 2 : 1;
  const uint32_t sequence = std::max(first.value_or(0), second.value_or(0)) + 1;
  std::string header = head;
  // The sequence number sits right after the magic and the version.
  std::memcpy(header.data() + 8, &sequence, sizeof sequence);
  HANDLE f = CreateFileA(JournalFile(path_, slot).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                         CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (f == INVALID_HANDLE_VALUE) return false;
  std::string bytes = Record(kHeader, header);
  bytes += kMarks;
  codec::PutNumber(bytes, static_cast<uint32_t>(steps));
  marksAt_ = bytes.size();
  steps_ = steps;
  bytes.append(steps, '\0');
  DWORD written = 0;
  if (!WriteFile(f, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) || written != bytes.size() ||
      !FlushFileBuffers(f)) {
    CloseHandle(f);
    DeleteFileA(JournalFile(path_, slot).c_str());
    return false;
  }
  file_ = f;
  // Marks go straight into the file's pages: they stay when the program is killed. Without a view
  // (no memory for one), each mark is a record of its own.
  mapping_ = CreateFileMappingA(f, nullptr, PAGE_READWRITE, 0, 0, nullptr);
  if (mapping_) view_ = MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, 0);
  SetFilePointer(f, 0, nullptr, FILE_END);
  // Fails without administrator rights, as it should: only such a run can vouch for its journal.
  if (vouch) modRegistry::WriteValue(kJournalVouchKey, "Journal", REG_BINARY, header);
  return true;
}

bool Journal::Begin(const Plan& plan, const UndoParts& parts) {
  return Start(Header(0, kind_, plan, parts), plan.size(), true);
}

bool Journal::Resume(const JournalRecord& record) {
  kind_ = record.kind;
  // A copy is vouched for only when what it copies was: this run did not make it.
  if (!Start(Header(0, kind_, record.plan, record.parts), record.plan.size(), JournalVouched(record))) return false;
  if (!record.undoFirst.empty()) Extend(record.undoFirst);
  for (size_t i = 0; i < record.done.size(); ++i)
    if (record.done[i]) Done(i);
  return true;
}

void Journal::Done(size_t step) {
  if (view_ && step < steps_) {
    static_cast<char*>(view_)[marksAt_ + step] = 1;
    return;
  }
  std::string payload;
  codec::PutNumber(payload, static_cast<uint32_t>(step));
  // Not flushed: a killed program still leaves it in the file; a power failure may lose it, and the
  // step then counts as the one in flight.
  Append(kDone, payload, false);
}

void Journal::Extend(const Plan& undoFirst) { Append(kExtend, EncodePlan(undoFirst), true); }

void Journal::Complete() {
  // Not flushed: a killed program still leaves the mark in the file, and should a power failure lose
  // it, the next start merely offers to put back a run that had finished.
  Append(kComplete, "", false);
  Close();
}

void Journal::Append(char tag, const std::string& payload, bool flush) {
  if (!file_) return;
  const std::string bytes = Record(tag, payload);
  DWORD written = 0;
  WriteFile(file_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (flush) FlushFileBuffers(file_);
}

void CompleteJournal(const std::string& path) {
  auto record = ReadJournal(path);
  if (!record || record->complete) return;
  Journal journal(path, record->kind);
  if (journal.Resume(*record)) journal.Complete();
}

void SetAsideJournalFile(const std::string& file) {
  const std::string aside = file + ".bad";
  DeleteFileA(aside.c_str());
  if (!MoveFileA(file.c_str(), aside.c_str())) DeleteFileA(file.c_str());
}

void RemoveJournal(const std::string& path) {
  for (int slot : {1, 2}) {
    DeleteFileA(JournalFile(path, slot).c_str());
    DeleteFileA((JournalFile(path, slot) + ".bad").c_str());
  }
  DeleteFileA(path.c_str());
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
