// Undo Last Apply and Review Changes; Apply when the system refuses a write or a step fails.
#include <gtest/gtest.h>
#include <windows.h>
#include <sddl.h>

#include <stdexcept>

#include "MainWindowFixture.h"
#include "app/Undo.h"
#include "apply/Journal.h"
#include "apply/Preview.h"
#include "icons/IconApply.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "settings/SettingsFixture.h"
#include "settings/SettingsTree.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"

namespace {

using vx::Main;

class Undo : public vxtest::MainWindowTest {
 protected:
  void SetUp() override { vx::RemoveJournal(vx::JournalPath()); }
  void TearDown() override { vx::RemoveJournal(vx::JournalPath()); }
  // Default Icon on the first row of every icon tab, and a new name for the Recycle Bin.
  void EditEveryTab(Main& m) {
    for (int tab : {vx::kTabDesktop, vx::kTabStart, vx::kTabFolders, vx::kTabDrives, vx::kTabOthers, vx::kTabSystem,
                    vx::kTabPointers}) {
      m.SelectTab(tab);
      m.List(tab)->SelItemIndex(0);
      m.OnCommand(IDC_DEFAULT);
    }
    m.SelectTab(vx::kTabDesktop);
    m.List(vx::kTabDesktop)->SelItemKey(vx::kRecycleEmptyKey);
    seam.names.push_back("Wastebasket");
    m.OnCommand(IDC_RENAME);
  }
};

// Settings toggled and icons changed on every tab: Review lists exactly what Apply then writes; keys,
// values, folders and system parameters come back exactly on undo, and a second undo redoes the Apply.
TEST_F(Undo, ReviewThenApplyThenSettingsAndIconsComeBackTogetherAndASecondUndoRedoes) {
  vxtest::SettingsScope settings;
  modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  auto m = Open();
  m->SelectTab(vx::kTabShell);
  ASSERT_TRUE(m->flags.treeFilled);
  vx::SettingsTree& tree = m->settingsTree();
  const std::string panel = std::string("Control Panel.") + vx::clsid::kControlPanel;
  for (const std::string& key :
       std::vector<std::string>{"Font Smoothing", "Quick View", "\"Shortcut to\" Prefix on New Shortcuts", panel}) {
    ASSERT_TRUE(tree.SelectKey(key)) << key;
    SendMessageA(tree.page().tree(), WM_KEYDOWN, VK_SPACE, 0);
  }
  tree.SelectKey("Double Click Width");
  SendMessageA(tree.page().hwnd(), WM_VSCROLL, SB_PAGEUP, reinterpret_cast<LPARAM>(tree.page().scrollBar()));
  EditEveryTab(*m);

  const vx::IconLists lists = m->Lists();
  const vx::ListBoxValues values(lists);
  const vx::Plan plan = vx::BuildApplyPlan(m->MakeApplyInput(values), m->flags);
  std::vector<std::string> touched = vxtest::KeysOf(plan);
  touched.push_back(vx::kWindowMetricsKey);  // the cache rebuild writes the icon size
  vxtest::KeySnapshot snapshot(touched);
  // Values of other types and absent values must come back as they were, not as Apply writes them.
  vxtest::WriteRaw(vx::kShellIconsKey, "3", REG_EXPAND_SZ, std::string("%SystemRoot%\\x.dll,1", 21));
  modRegistry::DeleteValue(vx::kCursorsKey, "Arrow");
  auto state = [&] {
    std::vector<std::string> v = vxtest::KeysNow(touched);
    v.push_back(GetFileAttributesA(settings.Cascade(panel).c_str()) == INVALID_FILE_ATTRIBUTES ? "no folder" : "folder");
    BOOL smoothing = FALSE;
    SystemParametersInfoA(SPI_GETFONTSMOOTHING, 0, &smoothing, 0);
    v.push_back(std::to_string(smoothing) + " " + std::to_string(GetSystemMetrics(SM_CXDOUBLECLK)));
    return v;
  };
  const auto before = state();
  m->OnCommand(IDM_TOOLS_REVIEW);
  ASSERT_EQ(seam.reviews.size(), 1u);
  EXPECT_EQ(state(), before);  // the review writes nothing

  std::vector<ui::ReviewRow> written;
  vx::SetStepHook([&](const vx::Step& s, size_t) {
    const vx::PreviewLine line = vx::PreviewOf(s);
    if (s.kind != vx::StepKind::Broadcast && !(s.kind == vx::StepKind::SystemParameter && s.action == SPI_SETCURSORS))
      written.push_back({line.change, line.where, "", line.after});
  });
  m->OnCommand(IDC_APPLY);
  vx::SetStepHook(nullptr);
  ASSERT_TRUE(m->lastApply().ok()) << vx::Describe(m->lastApply().failures[0].step);
  std::vector<ui::ReviewRow> reviewed = seam.reviews[0].rows;
  for (auto& r : reviewed) r.now.clear();
  ASSERT_EQ(reviewed.size(), written.size());
  for (size_t i = 0; i < reviewed.size(); ++i)
    EXPECT_EQ(reviewed[i], written[i]) << i << " " << reviewed[i].where << " | " << written[i].where;
  // And "now" was the value then: the Closed Folder override as it stood before Apply.
  for (const auto& r : seam.reviews[0].rows)
    EXPECT_TRUE(r.change != "Closed Folder icon" || r.now != r.after) << r.now;

  const auto applied = state();
  EXPECT_NE(applied, before);
  EXPECT_EQ(modRegistry::GetString(m->environment().recycleBinKey, ""), "Wastebasket");
  m->OnCommand(IDM_TOOLS_UNDO);
  EXPECT_EQ(state(), before) << vx::JournalRefusal();
  // The window shows what the system holds again, with nothing pending.
  EXPECT_FALSE(m->applyEnabled());
  EXPECT_NE(m->List(vx::kTabDesktop)->ItemCaption(vx::kRecycleEmptyKey), "Wastebasket (empty)");
  m->OnCommand(IDM_TOOLS_UNDO);
  EXPECT_EQ(state(), applied) << vx::JournalRefusal();
  m->OnCommand(IDM_TOOLS_UNDO);
  EXPECT_EQ(state(), before);
}

// Locked: everyone may read the key and nobody write it; unlocked: everyone may do anything.
void Lock(const std::string& path, bool locked) {
  PSECURITY_DESCRIPTOR sd = nullptr;
  HKEY key = vxtest::OpenKey(path, true);
  if (key && ConvertStringSecurityDescriptorToSecurityDescriptorA(locked ? "D:(A;;KR;;;WD)" : "D:(A;;KA;;;WD)",
                                                                  SDDL_REVISION_1, &sd, nullptr))
    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, sd);
  if (sd) LocalFree(sd);
  if (key) RegCloseKey(key);
}

TEST_F(Undo, ARefusedWriteIsNamedAndApplyAndTheJournalStayConsistent) {
  const std::string locked = "HKEY_CLASSES_ROOT\\VexillorTest.Locked";
  vx::Environment env = vx::DetectEnvironment();
  env.myComputerKey = locked;  // My Computer's icon and name go to a key nobody may write
  vxtest::RegistryScope scope{{locked}};
  for (const std::string& k : {locked + "\\DefaultIcon", locked}) Lock(k, true);
  auto m = Open("", env);
  vxtest::KeySnapshot snapshot(
      vxtest::KeysOf(vx::BuildIconApplyPlan(m->environment(), m->Catalogue(), vx::ListBoxValues(m->Lists()), {}))),
      metrics({vx::kWindowMetricsKey});
  m->OnCommand(IDC_DEFAULT);  // the Desktop tab's first row: My Computer
  seam.promptAnswers.push_back({1, false});  // the rebuild notice's OK
  m->OnCommand(IDC_APPLY);
  for (const std::string& k : {locked + "\\DefaultIcon", locked}) Lock(k, false);

  const vx::ApplyResult& result = m->lastApply();
  EXPECT_FALSE(result.stopped);
  ASSERT_EQ(result.failures.size(), 2u);
  EXPECT_FALSE(m->applyEnabled());  // everything else was written
  ASSERT_FALSE(seam.prompts.empty());
  const std::string& message = seam.prompts.back().message;
  EXPECT_EQ(message.find("Vexillor could not change:\n\nMy Computer icon\nMy Computer name\n\n"), 0u) << message;
  EXPECT_NE(message.find("Run as administrator"), std::string::npos);
  // The journal holds the complete run, so it can be taken back like any other.
  const auto journal = vx::ReadJournal(vx::JournalPath());
  ASSERT_TRUE(journal);
  EXPECT_TRUE(journal->complete);
  EXPECT_EQ(std::count(journal->done.begin(), journal->done.end(), true),
            static_cast<long>(journal->plan.size()));
  m->OnCommand(IDM_TOOLS_UNDO);
}

TEST_F(Undo, AFailingStepKeepsApplyEnabledIsReportedAndItsPredecessorsCanBeUndone) {
  auto window = Open();
  vx::Main& m = *window;

  // Every key the run may write, put back whatever happens; and the state of each beforehand.
  const std::vector<std::string> keys =
      vxtest::KeysOf(vx::BuildIconApplyPlan(m.environment(), m.Catalogue(), vx::ListBoxValues(m.Lists()), {}));
  vxtest::KeySnapshot snapshot(keys), metrics({vx::kWindowMetricsKey});
  auto state = [&] { return vxtest::KeysNow(keys); };
  const auto before = state();

  // An edit on the Folders tab, then Apply with the first pointer write failing.
  m.SelectTab(vx::kTabFolders);
  m.OnCommand(IDC_DEFAULT);
  ASSERT_TRUE(m.applyEnabled());
  vx::SetStepHook([](const vx::Step& s, size_t) {
    if (s.key == vx::kCursorsKey) throw std::runtime_error("the disk is full");
  });
  m.OnCommand(IDC_APPLY);
  vx::SetStepHook(nullptr);

  EXPECT_TRUE(m.applyEnabled());
  EXPECT_TRUE(m.flags.rebuildCachePending);  // the rebuild did not run: the next Apply does it
  const vx::ApplyResult& result = m.lastApply();
  EXPECT_TRUE(result.stopped);
  ASSERT_EQ(result.failures.size(), 1u);
  EXPECT_EQ(result.failures[0].step.key, vx::kCursorsKey);
  ASSERT_EQ(seam.prompts.size(), 1u);  // no rebuild notice, just the report
  // In the user's words: the pointer it stopped at, and why.
  EXPECT_EQ(seam.prompts[0].message.find("Vexillor could not finish applying your changes. It stopped at:\n\n"
                                         "Normal Select pointer (the disk is full)\n\n"),
            0u)
      << seam.prompts[0].message;

  // The steps before it wrote (the folder's restored icon among them), the ones after did not.
  const vx::IconItem* closed = vx::FindItem(m.Catalogue(), vx::kTabFolders, vx::kClosedFolderKey);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"),
            closed->defaultFile + "," + std::to_string(closed->defaultIndex));
  EXPECT_NE(state(), before);
  vx::Run(m.lastUndo().plan);
  EXPECT_EQ(state(), before);

  // Pressed again, Apply goes through and is disabled.
  seam.promptAnswers.push_back({1, false});  // the rebuild notice's OK
  m.OnCommand(IDC_APPLY);
  EXPECT_FALSE(m.applyEnabled());
  EXPECT_TRUE(m.lastApply().ok());
  m.flags = {};
}

}  // namespace

namespace {

// The session ending in the middle of an Apply: the run stops at the next step, nothing is asked, the
// journal says which steps ran and stays incomplete, so the next start offers to put them back.
TEST_F(Undo, EndingTheSessionStopsApplyAtAStepWithItsJournalConsistent) {
  modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  auto window = Open();
  vx::Main& m = *window;
  const std::vector<std::string> keys =
      vxtest::KeysOf(vx::BuildIconApplyPlan(m.environment(), m.Catalogue(), vx::ListBoxValues(m.Lists()), {}));
  vxtest::KeySnapshot snapshot(keys), metrics({vx::kWindowMetricsKey});
  m.SelectTab(vx::kTabFolders);
  m.OnCommand(IDC_DEFAULT);
  vx::SetStepHook([&](const vx::Step&, size_t i) {
    if (i == 5) {
      EXPECT_TRUE(SendMessageA(m.hwnd(), WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF));
    }
  });
  m.OnCommand(IDC_APPLY);
  vx::SetStepHook(nullptr);
  EXPECT_TRUE(m.lastApply().stopped);
  EXPECT_TRUE(seam.prompts.empty());
  const auto record = vx::ReadJournal(vx::JournalPath());
  ASSERT_TRUE(record);
  EXPECT_FALSE(record->complete);
  EXPECT_TRUE(record->done[5]);
  EXPECT_FALSE(record->done[6]);
  window.reset();
  seam.promptAnswers.push_back({1, false});  // "Yes"
  Open().reset();
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_NE(seam.prompts[0].message.find("stopped before it had finished applying"), std::string::npos);
  EXPECT_TRUE(vx::CanUndoLastApply());  // the putting back is itself complete
}

}  // namespace
