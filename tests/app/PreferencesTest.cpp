// The preference routines: path names, titles and the recent-themes list in the registry.
#include <gtest/gtest.h>

#include "app/Preferences.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"

namespace {

TEST(PathNames, FileNameAndTitle) {
  struct {
    const char* path;
    const char* name;
    const char* title;
  } cases[] = {
      {"C:\\Themes\\Blue.Dark.vxtheme", "Blue.Dark.vxtheme", "Blue"},
      {"C:Blue.vxtheme", "Blue.vxtheme", "Blue"},
      {"Blue.vxtheme", "Blue.vxtheme", "Blue"},
      {"C:\\Themes\\", "", ""},
      {"", "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(vx::GetFileName(c.path), c.name) << c.path;
    EXPECT_EQ(vx::FileTitle(c.path), c.title) << c.path;
  }
}

class RecentThemes : public ::testing::Test {
 protected:
  vxtest::RegistryScope scope{{vx::kProgramKey}};
  static std::string Slot(int n) { return modRegistry::GetString(vx::kThemesKey, std::to_string(n)); }
};

TEST_F(RecentThemes, ShiftingDuplicatesAndTheUnchangedNewest) {
  vx::RecentMenu menu;
  vx::RecentThemes("", menu);
  EXPECT_FALSE(menu.separator);
  EXPECT_EQ(menu.visible, (std::array<bool, 4>{}));

  for (const char* p : {"C:\\t\\A.vxtheme", "C:\\t\\B.vxtheme", "C:\\t\\C.vxtheme"}) vx::RecentThemes(p, menu);
  EXPECT_EQ(Slot(1), "C:\\t\\C.vxtheme");
  EXPECT_EQ(Slot(2), "C:\\t\\B.vxtheme");
  EXPECT_EQ(Slot(3), "C:\\t\\A.vxtheme");
  EXPECT_EQ(Slot(4), "Error");
  EXPECT_TRUE(menu.separator);
  EXPECT_EQ(menu.captions[0], "C.vxtheme");
  EXPECT_EQ(menu.captions[2], "A.vxtheme");
  EXPECT_FALSE(menu.visible[3]);

  // The newest again: nothing moves.
  vx::RecentThemes("C:\\t\\C.vxtheme", menu);
  EXPECT_EQ(Slot(2), "C:\\t\\B.vxtheme");
  EXPECT_EQ(Slot(4), "Error");

  // The second newest goes first and stays in slot 3 as well.
  vx::RecentThemes("C:\\t\\B.vxtheme", menu);
  EXPECT_EQ(Slot(1), "C:\\t\\B.vxtheme");
  EXPECT_EQ(Slot(2), "C:\\t\\C.vxtheme");
  EXPECT_EQ(Slot(3), "C:\\t\\B.vxtheme");
  EXPECT_EQ(Slot(4), "C:\\t\\A.vxtheme");
  EXPECT_EQ(menu.captions, (std::array<std::string, 4>{"B.vxtheme", "C.vxtheme", "B.vxtheme", "A.vxtheme"}));

  // Reading back in a new run shows the same, and a slot that is not a path stays hidden.
  modRegistry::SaveString(vx::kThemesKey, "3", "not a path");
  vx::RecentMenu fresh;
  vx::RecentThemes("", fresh);
  EXPECT_TRUE(fresh.separator);
  EXPECT_EQ(fresh.visible, (std::array<bool, 4>{true, true, false, true}));
  EXPECT_EQ(fresh.captions[3], "A.vxtheme");
}

}  // namespace
