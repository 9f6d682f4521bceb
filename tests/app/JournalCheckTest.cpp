// Journals the program did not write, fed to every way a journal runs: the start-up offer, Undo Last
// Apply and "/q /undo". None of them may run a step; the file is set aside and the user told once.
// And the journals it did write: a power cut's zeroed tail, a cut mark, an interrupted Undo.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <functional>

#include "MainWindowFixture.h"
#include "app/CommandLine.h"
#include "app/Undo.h"
#include "apply/Codec.h"
#include "apply/Journal.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"

namespace {

using namespace vx;

constexpr const char* kHostileKey = "HKEY_CURRENT_USER\\Software\\VxHostile";
constexpr const char* kRejected = "damaged or changed by another program";

// A journal whose one step sets the Closed Folder override and whose undo is `undo`.
void WriteJournal(const Plan& undo, bool complete, Journal::Kind kind = Journal::kApply) {
  Journal j(JournalPath(), kind);
  const Plan plan{SetString(kShellIconsKey, "3", "C:\\journal.dll,1")};
  ASSERT_TRUE(j.Begin(plan, UndoParts{{undo}, {false}}));
  j.Done(0);
  if (complete) j.Complete();
}

// A file written byte by byte: the header record with the given payload, its checksum as the program
// computes it, then `tail`.
void WriteRawJournal(const std::string& payload, const std::string& tail = "") {
  std::string record(1, 'H');
  codec::PutNumber(record, static_cast<uint32_t>(payload.size()));
  record += payload;
  uint32_t h = 2166136261u;
  for (unsigned char c : record) h = (h ^ c) * 16777619u;
  codec::PutNumber(record, h);
  CreateDirectoryA(JournalPath().substr(0, JournalPath().rfind('\\')).c_str(), nullptr);
  std::ofstream(JournalFile(JournalPath(), 1), std::ios::binary) << record << tail;
}

std::string HeaderStart(uint32_t steps) {
  std::string p = "VXJ2";
  codec::PutNumber(p, 2);
  codec::PutNumber(p, 1);
  p += 'A';
  codec::PutNumber(p, steps);
  return p;
}

struct Hostile {
  const char* what;
  std::function<void(bool complete)> write;
};

const Hostile kHostile[] = {
    {"a key of its own choosing", [](bool c) { WriteJournal({SetString(kHostileKey, "x", "1")}, c); }},
    {"another root", [](bool c) { WriteJournal({SetString("HKEY_USERS\\.DEFAULT\\Control Panel\\Cursors", "VxHostile", "1")}, c); }},
    {"a deletion of a shared key", [](bool c) { WriteJournal({DeleteKey("HKEY_CURRENT_USER\\Software", "VxHostileTree")}, c); }},
    {"a folder", [](bool c) { WriteJournal({CreateFolder("C:\\VxHostileFolder")}, c); }},
    {"a getter with a one-byte buffer", [](bool c) { WriteJournal({SystemParameter(SPI_GETDESKWALLPAPER, 1, 0, std::string(1, '\0'))}, c); }},
    {"a setter with the wrong buffer", [](bool c) { WriteJournal({SystemParameter(SPI_SETANIMATION, 1, 0, std::string(1, 'x'))}, c); }},
    {"an odd broadcast", [](bool c) { WriteJournal({Broadcast(0, 0x1234, WM_NULL)}, c); }},
    {"a foreign step kind", [](bool) {
       std::string p = HeaderStart(1);
       codec::PutNumber(p, 99);
       WriteRawJournal(p + std::string(64, '\0'));
     }},
    {"four million steps", [](bool) { WriteRawJournal(HeaderStart(4000000) + std::string(1 << 20, 'x')); }},
    {"a file too large to be one", [](bool) { WriteRawJournal(HeaderStart(1), std::string(5 << 20, '\0')); }},
};

class JournalCheck : public vxtest::MainWindowTest {
 protected:
  JournalCheck() {
    RemoveJournal(JournalPath());
    modRegistry::DeleteTree(kHostileKey);
    modRegistry::SaveString(kShellIconsKey, "3", "C:\\before.dll,2");
    modRegistry::SaveDword(kSettingsKey, "Dialog Rebuild", 1);
  }
  ~JournalCheck() override {
    RemoveJournal(JournalPath());
    modRegistry::DeleteTree(kHostileKey);
    RemoveDirectoryA("C:\\VxHostileFolder");
  }
  // Nothing of the journal ran and it was set aside.
  void ExpectRefused(const std::string& what) {
    EXPECT_FALSE(modRegistry::KeyExists(kHostileKey)) << what;
    DWORD type = 0;
    std::string bytes;
    EXPECT_FALSE(modRegistry::ReadValue("HKEY_USERS\\.DEFAULT\\Control Panel\\Cursors", "VxHostile", type, bytes));
    EXPECT_EQ(GetFileAttributesA("C:\\VxHostileFolder"), INVALID_FILE_ATTRIBUTES) << what;
    EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "C:\\before.dll,2") << what;
    const std::string file = JournalFile(JournalPath(), 1);
    EXPECT_EQ(GetFileAttributesA(file.c_str()), INVALID_FILE_ATTRIBUTES) << what;
    EXPECT_NE(GetFileAttributesA((file + ".bad").c_str()), INVALID_FILE_ATTRIBUTES) << what;
    RemoveJournal(JournalPath());
  }
  size_t Rejections() const {
    size_t n = 0;
    for (const auto& p : seam.prompts) n += p.message.find(kRejected) != std::string::npos;
    return n;
  }
};

TEST_F(JournalCheck, AJournalTheProgramCouldNotHaveWrittenRunsNowhere) {
  vxtest::KeySnapshot cursors({"HKEY_USERS\\.DEFAULT\\Control Panel\\Cursors"});
  for (const Hostile& h : kHostile) {
    // At start, cut off: no offer, one message.
    h.write(false);
    seam.prompts.clear();
    Open().reset();
    EXPECT_EQ(seam.prompts.size(), 1u) << h.what;
    EXPECT_EQ(Rejections(), 1u) << h.what;
    ExpectRefused(h.what);

    // Undo Last Apply on a complete one.
    auto m = Open();
    h.write(true);
    seam.prompts.clear();
    m->OnCommand(IDM_TOOLS_UNDO);
    EXPECT_EQ(Rejections(), 1u) << h.what;
    ExpectRefused(h.what);
    m.reset();

    // "/q /undo": its own exit code, the reason in the log.
    h.write(true);
    DWORD code = 0;
    EXPECT_TRUE(vxtest::RealProgram("/q /undo").Ended(60000, &code));
    EXPECT_EQ(code, static_cast<DWORD>(kExitJournalRefused)) << h.what;
    ExpectRefused(h.what);
  }
}

// A power cut leaves zeros after the last mark, or half a mark: what came before stands, "No" keeps
// what was written and the offer does not come back.
TEST_F(JournalCheck, AZeroedTailOrACutMarkIsOfferedOnceAndNoEndsIt) {
  for (const std::string& tail : {std::string(4096, '\0'), std::string("D\x04\0\0", 4)}) {
    WriteJournal({SetRaw(kShellIconsKey, "3", REG_SZ, std::string("C:\\before.dll,2", 16))}, false);
    std::ofstream(JournalFile(JournalPath(), 1), std::ios::binary | std::ios::app) << tail;
    seam.prompts.clear();
    Open().reset();
    ASSERT_EQ(seam.prompts.size(), 1u);
    EXPECT_NE(seam.prompts[0].message.find("stopped before it had finished applying"), std::string::npos);
    Open().reset();
    EXPECT_EQ(seam.prompts.size(), 1u);  // not asked again
    EXPECT_TRUE(CanUndoLastApply());
    RemoveJournal(JournalPath());
  }
}

// Recovery puts back the steps marked done and the one in flight, never the ones the run had not
// reached (they may have changed since); an interrupted Undo is offered as one, and "Yes" finishes it.
TEST_F(JournalCheck, RecoveryPutsBackOnlyWhatTheRunReachedAndFinishesAnUndo) {
  vxtest::KeySnapshot icons({kShellIconsKey});
  const Plan plan{SetString(kShellIconsKey, "3", "a"), SetString(kShellIconsKey, "4", "b"),
                  SetString(kShellIconsKey, "5", "c")};
  UndoParts parts;
  for (const char* n : {"3", "4", "5"})
    parts.fragments.push_back({SetRaw(kShellIconsKey, n, REG_SZ, std::string("old") + n + '\0')});
  parts.repeat.assign(3, false);
  for (const char* n : {"3", "4", "5"}) modRegistry::SaveString(kShellIconsKey, n, "now");
  {
    Journal j(JournalPath(), Journal::kApply);
    ASSERT_TRUE(j.Begin(plan, parts));
    j.Done(0);  // step 1 in flight, step 2 never reached
  }
  seam.promptAnswers.push_back({1, false});  // "Yes"
  Open().reset();
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "old3");
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "4"), "old4");
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "5"), "now");

  // An Undo of the same plan cut off after its first step: offered as an Undo, finished on "Yes".
  RemoveJournal(JournalPath());
  {
    Journal j(JournalPath(), Journal::kUndo);
    ASSERT_TRUE(j.Begin(plan, parts));
    j.Done(0);
  }
  seam.prompts.clear();
  seam.promptAnswers.push_back({1, false});
  Open().reset();
  ASSERT_FALSE(seam.prompts.empty());
  EXPECT_NE(seam.prompts[0].message.find("finished taking back your last Apply"), std::string::npos);
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "5"), "c");
  const auto record = ReadJournal(JournalPath());
  ASSERT_TRUE(record);
  EXPECT_TRUE(record->complete);
  EXPECT_EQ(record->kind, Journal::kUndo);
}

}  // namespace

namespace {

// With administrator rights, a journal that no such run vouched for shows its machine-wide writes and
// asks before making them; one this run wrote does not ask.
TEST_F(JournalCheck, AnAdministratorSeesMachineWideWritesOfAJournalItDidNotWriteFirst) {
  if (!RunsAsAdministrator()) GTEST_SKIP() << "needs administrator rights (Wine's default user has them)";
  vxtest::RegistryScope vouch({kJournalVouchKey});
  auto m = Open();
  const Plan undo{SetRaw(kShellIconsKey, "3", REG_SZ, std::string("C:\\undone.dll,5", 16))};
  WriteJournal(undo, true);
  modRegistry::WriteValue(kJournalVouchKey, "Journal", REG_BINARY, "another header");  // as if written by a user
  seam.promptAnswers.push_back({0, false});  // "No"
  m->OnCommand(IDM_TOOLS_UNDO);
  ASSERT_EQ(seam.reviews.size(), 1u);
  ASSERT_EQ(seam.reviews[0].rows.size(), 1u);
  EXPECT_EQ(seam.reviews[0].rows[0].after, "\"C:\\undone.dll,5\"");
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "C:\\before.dll,2");
  seam.promptAnswers.push_back({1, false});  // "Yes"
  m->OnCommand(IDM_TOOLS_UNDO);
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "C:\\undone.dll,5");

  // Written by this run: no list, no question.
  RemoveJournal(JournalPath());
  WriteJournal(undo, true);
  seam.reviews.clear();
  m->OnCommand(IDM_TOOLS_UNDO);
  EXPECT_TRUE(seam.reviews.empty());
}

}  // namespace

namespace {

// When the journal cannot be written (here both its files are folders), Apply asks before it writes
// anything: "No" leaves everything as it was and the changes pending.
TEST_F(JournalCheck, ApplyAsksFirstWhenItsJournalCannotBeWritten) {
  const std::string dir = JournalPath().substr(0, JournalPath().rfind('\\'));
  CreateDirectoryA(dir.c_str(), nullptr);
  for (int slot : {1, 2}) ASSERT_TRUE(CreateDirectoryA(JournalFile(JournalPath(), slot).c_str(), nullptr));
  auto m = Open();
  m->SelectTab(kTabFolders);
  m->OnCommand(IDC_DEFAULT);  // Closed Folder back to its default
  seam.prompts.clear();
  seam.promptAnswers.push_back({0, false});  // "No"
  m->OnCommand(IDC_APPLY);
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_NE(seam.prompts[0].message.find("cannot write the record"), std::string::npos);
  EXPECT_TRUE(m->lastApply().notStarted);
  EXPECT_EQ(modRegistry::GetString(kShellIconsKey, "3"), "C:\\before.dll,2");
  EXPECT_TRUE(m->applyEnabled());
  m.reset();
  for (int slot : {1, 2}) RemoveDirectoryA(JournalFile(JournalPath(), slot).c_str());
}

}  // namespace
