// Apply through the main window when one of its steps fails: the window keeps the changes pending,
// says which step failed, and what the steps before it wrote can be taken back exactly.
#include <gtest/gtest.h>
#include <windows.h>

#include <stdexcept>

#include "MainWindowFixture.h"
#include "icons/IconApply.h"
#include "resource.h"
#include "support/KeySnapshot.h"

namespace {

using ApplyRun = vxtest::MainWindowTest;

TEST_F(ApplyRun, AFailingStepKeepsApplyEnabledIsReportedAndItsPredecessorsCanBeUndone) {
  auto window = Open();
  vx::Main& m = *window;

  // Every key the run may write, put back whatever happens; and the state of each value beforehand.
  const vx::Plan plan = vx::BuildIconApplyPlan(m.environment(), m.Catalogue(), vx::ListBoxValues(m.Lists()), {});
  std::vector<std::string> keys = {vx::kWindowMetricsKey};
  for (const vx::Step& s : plan) keys.push_back(s.key);
  vxtest::KeySnapshot snapshot(keys);
  auto state = [&] {
    std::vector<std::string> v;
    for (const vx::Step& s : plan) {
      DWORD type = 0;
      std::string bytes;
      v.push_back(vxtest::ReadRaw(s.key, s.value, type, bytes) ? std::to_string(type) + ":" + bytes : "absent");
    }
    return v;
  };
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
