// The executor on the real registry and files: what a plan does, what its undo puts back, failing steps.
#include <gtest/gtest.h>
#include <windows.h>
#include <sddl.h>

#include <filesystem>
#include <stdexcept>

#include "apply/Executor.h"
#include "apply/Journal.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"

using namespace vx;

namespace {

const std::string kBase = "HKEY_CURRENT_USER\\Software\\VexillorTest";

std::string TempFolder(const char* name) { return (std::filesystem::temp_directory_path() / name).string(); }

// Everything under the test key, as a comparable tree (empty when the key is missing).
modRegistry::KeyTree Tree() {
  modRegistry::KeyTree t;
  modRegistry::ReadTree(kBase, t);
  return t;
}

struct Executor : ::testing::Test {
  vxtest::RegistryScope scope{{kBase}};
  std::string kept = TempFolder("VexillorTestKept"), made = TempFolder("VexillorTestMade");
  Executor() {
    CreateDirectoryA(kept.c_str(), nullptr);
    RemoveDirectoryA(made.c_str());
    modRegistry::SaveString(kBase + "\\Old", "text", "before");
    modRegistry::SaveString(kBase + "\\Old", "gone", "deleted by the plan");
    modRegistry::SaveDword(kBase + "\\Old", "binary", 7);
    vxtest::WriteRaw(kBase + "\\Tree\\Sub\\Deep", "x", REG_EXPAND_SZ, std::string("%a%\0", 4));
    modRegistry::SaveString(kBase + "\\Tree", "", "default");
  }
  ~Executor() override {
    RemoveDirectoryA(kept.c_str());
    RemoveDirectoryA(made.c_str());
    SetStepHook(nullptr);
  }
};

TEST_F(Executor, UndoPutsBackValuesTypesTreesKeysFoldersAndParameters) {
  const UINT width = static_cast<UINT>(GetSystemMetrics(SM_CXDOUBLECLK));
  const Plan plan = {
      SetString(kBase + "\\Old", "text", "after"),
      SetString(kBase + "\\New\\Chain", "v", "created with its keys"),
      SetBinary(kBase + "\\Old", "binary", std::string("\1\0\0\0", 4)),  // a DWORD becomes bytes
      DeleteValue(kBase + "\\Old", "gone"),
      DeleteKey(kBase, "Tree"),  // refused: on NT-family systems a key with subkeys stays
      DeleteKey(kBase + "\\Tree\\Sub", "Deep"),
      DeleteKey(kBase + "\\Tree", "Sub"),
      DeleteKey(kBase, "Tree"),
      CreateKey(kBase + "\\Made\\Empty"),
      CreateFolder(made),
      RemoveFolder(kept),
      SystemParameter(SPI_SETDOUBLECLKWIDTH, width + 3, 0),
  };
  const modRegistry::KeyTree before = Tree();
  const ApplyResult result = Execute(plan);
  ASSERT_EQ(result.failures.size(), 1u);
  EXPECT_EQ(result.failures[0].index, 4u);
  EXPECT_FALSE(result.stopped);
  EXPECT_EQ(modRegistry::GetString(kBase + "\\New\\Chain", "v"), "created with its keys");
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\Tree"));
  EXPECT_EQ(GetFileAttributesA(kept.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_NE(GetFileAttributesA(made.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetSystemMetrics(SM_CXDOUBLECLK), static_cast<int>(width + 3));

  EXPECT_TRUE(vx::Run(result.undo.plan).empty());
  EXPECT_EQ(Tree(), before);  // names, types and bytes of every value, every key, nothing more
  EXPECT_NE(GetFileAttributesA(kept.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetFileAttributesA(made.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetSystemMetrics(SM_CXDOUBLECLK), static_cast<int>(width));
}

TEST_F(Executor, AThrowingStepStopsTheRunUnlessItMaySkipAndWriteFailuresAreRecorded) {
  const modRegistry::KeyTree before = Tree();
  const Step empty = SetBinary(kBase + "\\Old", "binary", "");  // an empty byte string throws
  const Plan plan = {SetString(kBase + "\\Old", "text", "first"), empty, SetString(kBase + "\\Old", "text", "third")};
  ApplyResult r = Execute(plan);
  EXPECT_TRUE(r.stopped);
  ASSERT_EQ(r.failures.size(), 1u);
  EXPECT_EQ(r.failures[0].index, 1u);
  EXPECT_EQ(r.failures[0].reason, "Subscript out of range");
  EXPECT_EQ(modRegistry::GetString(kBase + "\\Old", "text"), "first");  // the third step never ran
  vx::Run(r.undo.plan);
  EXPECT_EQ(Tree(), before);

  // Marked skippable, the same step is recorded and passed over; a write that cannot be made (a root
  // that does not exist) is recorded and the run goes on.
  r = Execute({Skippable({empty})[0], SetString("HKEY_NOWHERE\\x", "v", "t"), SetString(kBase, "after", "yes")});
  EXPECT_FALSE(r.stopped);
  ASSERT_EQ(r.failures.size(), 2u);
  EXPECT_EQ(r.failures[1].reason, "the write failed");
  EXPECT_EQ(modRegistry::GetString(kBase, "after"), "yes");

  // What a step hook throws counts as that step's failure, before the step runs.
  SetStepHook([](const Step& s, size_t) {
    if (s.value == "second") throw std::runtime_error("stopped by the test");
  });
  r = Execute({SetString(kBase, "first", "1"), SetString(kBase, "second", "2"), SetString(kBase, "third", "3")});
  EXPECT_TRUE(r.stopped);
  EXPECT_EQ(r.failures[0].reason, "stopped by the test");
  EXPECT_EQ(modRegistry::GetString(kBase, "second"), "Error");
  vx::Run(r.undo.plan);
  EXPECT_EQ(modRegistry::GetString(kBase, "first"), "Error");
}

TEST(KeyTreeText, RoundTripsAndRefusesDamage) {
  modRegistry::KeyTree tree;
  tree.values.push_back({"", REG_SZ, "default"});
  tree.values.push_back({"bin", REG_BINARY, std::string("\0\xff\n", 3)});
  tree.subkeys.push_back({"Sub", modRegistry::KeyTree{{{"n", REG_DWORD, std::string("\1\0\0\0", 4)}}, {}}});
  const std::string text = EncodeKeyTree(tree);
  modRegistry::KeyTree back;
  ASSERT_TRUE(DecodeKeyTree(text, back));
  EXPECT_EQ(back, tree);
  for (size_t cut = 0; cut < text.size(); ++cut) EXPECT_FALSE(DecodeKeyTree(text.substr(0, cut), back)) << cut;
  // A wrong tag, a trailing byte, a length far past the text.
  std::string wrong = text;
  wrong[0] = 'X';
  for (const std::string& bad : {wrong, text + "E", std::string("V\xff\xff\xff\x7f", 5)})
    EXPECT_FALSE(DecodeKeyTree(bad, back));
}

// One step of a kind, with every field that kind carries set to something other than its default.
Step Sample(StepKind kind) {
  switch (kind) {
    case StepKind::SetString: return SetString(kBase, "v", std::string("a\0b", 3));
    case StepKind::SetDword: return SetDword(kBase, "", -7);
    case StepKind::SetBinary: return SetBinary(kBase, "b", std::string("\xff\0", 2));
    case StepKind::SetRaw: return SetRaw(kBase, "r", REG_EXPAND_SZ, "%x%");
    case StepKind::DeleteValue: return DeleteValue(kBase, "d");
    case StepKind::DeleteKey: return DeleteKey(kBase, "Sub");
    case StepKind::CreateKey: return CreateKey(kBase + "\\New");
    case StepKind::PutKeyTree: return PutKeyTree(kBase, EncodeKeyTree({{{"n", REG_SZ, "x"}}, {}}));
    case StepKind::CreateFolder: return CreateFolder("C:\\made");
    case StepKind::RemoveFolder: return RemoveFolder("C:\\gone");
    case StepKind::SystemParameter: return SystemParameter(SPI_SETANIMATION, 20, SPIF_SENDCHANGE, std::string(20, '\1'));
    case StepKind::Broadcast: return Broadcast(SPI_SETICONMETRICS, -1, WM_SETTINGCHANGE);
  }
  return {};
}

// The journal's one form for plans: every kind comes back equal, labels and the skip flag with it;
// a plan cut anywhere, or claiming more steps than its bytes can hold, is refused.
TEST(PlanCodec, EveryStepKindRoundTripsAndDamageIsRefused) {
  Plan plan;
  for (int k = 0; k <= static_cast<int>(StepKind::Broadcast); ++k) {
    plan.push_back(Sample(static_cast<StepKind>(k)));
    plan.back().label = "step " + std::to_string(k);
    plan.back().skipOnError = k % 2 == 0;
  }
  plan.push_back(SystemParameter(SPI_SETBEEP, 1, 0));  // no buffer is not an empty one
  const std::string text = EncodePlan(plan);
  Plan back;
  ASSERT_TRUE(DecodePlan(text, back));
  EXPECT_EQ(back, plan);
  for (size_t cut = 0; cut < text.size(); ++cut) EXPECT_FALSE(DecodePlan(text.substr(0, cut), back)) << cut;
  std::string huge = text;
  huge[0] = huge[1] = huge[2] = '\x7f';
  EXPECT_FALSE(DecodePlan(huge, back));
  EXPECT_FALSE(DecodePlan(text + "x", back));
}

// A window that stops answering (its thread blocked) holds a broadcast up only for the time-out.
struct HungWindow {
  HANDLE made = CreateEventA(nullptr, TRUE, FALSE, nullptr), release = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  static DWORD WINAPI Run(void* self) {
    auto* h = static_cast<HungWindow*>(self);
    HWND w = CreateWindowExA(0, "STATIC", "hung", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    SetEvent(h->made);
    WaitForSingleObject(h->release, INFINITE);  // no messages answered meanwhile
    DestroyWindow(w);
    return 0;
  }
};

TEST(Broadcasts, AHungWindowDoesNotHoldTheRunUp) {
  HungWindow hung;
  DWORD id = 0;
  HANDLE thread = CreateThread(nullptr, 0, &HungWindow::Run, &hung, 0, &id);
  ASSERT_NE(thread, nullptr);
  WaitForSingleObject(hung.made, INFINITE);
  const ApplyResult result = Execute({Broadcast(SPI_SETICONMETRICS, 0), Broadcast(SPI_SETICONMETRICS, 0)});
  SetEvent(hung.release);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  CloseHandle(hung.made);
  CloseHandle(hung.release);
  EXPECT_TRUE(result.ok());
  EXPECT_FALSE(result.stopped);
}

// Deletions from a key that may be read but not written fail when there was something to delete, and
// are reported with their label like failed writes; nothing there to delete is no failure.
TEST_F(Executor, ADeletionThatCannotBeMadeIsAFailure) {
  const std::string locked = kBase + "\\Locked";
  modRegistry::SaveString(locked, "present", "x");
  modRegistry::SaveString(locked + "\\Child", "", "x");
  auto lock = [&](const char* sddl) {
    PSECURITY_DESCRIPTOR sd = nullptr;
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\VexillorTest\\Locked", 0, WRITE_DAC, &key);
    if (key && ConvertStringSecurityDescriptorToSecurityDescriptorA(sddl, SDDL_REVISION_1, &sd, nullptr))
      RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, sd);
    if (sd) LocalFree(sd);
    if (key) RegCloseKey(key);
  };
  lock("D:(A;;KR;;;WD)");
  Step value = DeleteValue(locked, "present"), key = DeleteKey(locked, "Child");
  value.label = "the setting \"Present\"";
  key.label = "the setting \"Child\"";
  const ApplyResult result = Execute({value, DeleteValue(locked, "absent"), key, DeleteKey(locked, "Missing"),
                                      DeleteValue(kBase + "\\NoSuchKey", "x")});
  lock("D:(A;;KA;;;WD)");
  ASSERT_EQ(result.failures.size(), 2u);
  EXPECT_EQ(result.failures[0].step.label, "the setting \"Present\"");
  EXPECT_EQ(result.failures[1].step.label, "the setting \"Child\"");
  EXPECT_EQ(modRegistry::GetString(locked, "present"), "x");
}

}  // namespace
