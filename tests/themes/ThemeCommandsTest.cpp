// The theme commands: the open dialog, dispatch by extension, messages, the overwrite question, the save name.
#include <gtest/gtest.h>

#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "system/Keys.h"
#include "themes/ThemeCommands.h"
#include "themes/ThemeFixtures.h"

namespace {

// One file that every format can read: the own sections and a Plus! class section.
const char* const kEveryFormat =
    "[Desktop Icons]\r\nMy Briefcase=C:\\Own\\case.ico,1\r\n"
    "[CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\DefaultIcon]\r\nDefaultValue=C:\\Plus\\pc.ico,2\r\n"
    "[CLSID\\{FBF23B42-E3F0-101B-8488-00AA003E56F8}\\DefaultIcon]\r\nDefaultValue=C:\\Plus\\net.ico,3\r\n";

struct Commands : testing::Test {
  Commands() : folder("vxcommands"), scope(seam), prefs({vxtest::kProgramKey}) {}
  vx::Environment env = vx::MakeEnvironment("Win98", "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "Error", false,
                                            "C:\\Vx\\vexillor.exe");
  vxtest::ScratchFolder folder;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope;
  vxtest::RegistryScope prefs;
};

TEST_F(Commands, DispatchByTheLowerCasedExtension) {
  const struct { const char *name, *changedKey; } cases[] = {  // changedKey: the last item the format reads
      {"a.vxtheme", "My Briefcase"}, {"B.VXTHEME", "My Briefcase"}, {"c.Theme", "The Internet"},
      {"d.MOTIF", "My Computer"}};
  for (const auto& c : cases) {
    const std::string file = folder.File(c.name);
    vxtest::WriteBytes(file, kEveryFormat);
    vxtest::RecordingLists lists(env);
    const vx::OpenOutcome outcome = vx::OpenThemeFile(file, env, lists, nullptr);
    EXPECT_EQ(outcome.status, vx::OpenOutcome::Loaded) << c.name;
    EXPECT_EQ(outcome.path, file);
    ASSERT_FALSE(lists.changes.empty()) << c.name;
    EXPECT_EQ(lists.changes.back().key, c.changedKey) << c.name;
    // A Plus! theme also brings My Computer; the own format brings only what its sections name.
    EXPECT_EQ(lists.changes.size(), std::string(c.changedKey) == "The Internet" ? 2u : 1u) << c.name;
  }
  EXPECT_TRUE(seam.prompts.empty());
  EXPECT_TRUE(seam.fileDialogs.empty());
}

TEST_F(Commands, OpenDialogNotAThemeAndBackToTheDialog) {
  const std::string good = folder.File("good.vxtheme");
  vxtest::WriteBytes(good, kEveryFormat);
  seam.files = {folder.File("notes.txt"), good};
  vxtest::RecordingLists lists(env);
  const vx::OpenOutcome outcome = vx::OpenThemeFile("", env, lists, nullptr);
  EXPECT_EQ(outcome.status, vx::OpenOutcome::Loaded);
  EXPECT_EQ(outcome.path, good);
  ASSERT_EQ(seam.fileDialogs.size(), 2u);
  EXPECT_EQ(seam.fileDialogs[0].title, "Open Theme");
  EXPECT_FALSE(seam.fileDialogs[0].save);
  EXPECT_EQ(seam.fileDialogs[0].filter,
            std::string("All Theme Files\0*.vxtheme;*.motif;*.theme\0Icon Theme (*.vxtheme)\0*.vxtheme\0"
                        "Microangelo Motif (*.motif)\0*.motif\0Microsoft Theme (*.theme)\0*.theme\0",
                        145));
  ASSERT_EQ(seam.prompts.size(), 1u);
  EXPECT_EQ(seam.prompts[0].message, "The file notes.txt does not appear to be a valid theme file.");
  EXPECT_EQ(seam.prompts[0].icon, ui::kIconStop);

  // Cancelling after a refused file changes nothing and says why.
  seam.files = {folder.File("x.doc"), std::nullopt};
  vxtest::RecordingLists untouched(env);
  EXPECT_EQ(vx::OpenThemeFile("", env, untouched, nullptr).status, vx::OpenOutcome::NotTheme);
  EXPECT_TRUE(untouched.changes.empty());
  seam.files = {std::nullopt};
  EXPECT_EQ(vx::OpenThemeFile("", env, untouched, nullptr).status, vx::OpenOutcome::Cancelled);
}

TEST_F(Commands, RefusedEntriesNamedInOnePrompt) {
  const std::string file = folder.File("net.vxtheme");
  vxtest::WriteBytes(file,
                     "[Desktop Icons]\r\nMy Computer=\\\\evil\\share\\pc.ico,0\r\nIn Box=C:\\ok.ico,1\r\n"
                     "[Pointers]\r\nBusy=http://evil/busy.ani,0\r\nMove=%ThemeDir%\\\\evil\\x.cur,0\r\n");
  vxtest::RecordingLists lists(env);
  const vx::OpenOutcome outcome = vx::OpenThemeFile(file, env, lists, nullptr);
  EXPECT_EQ(outcome.status, vx::OpenOutcome::Loaded);
  ASSERT_EQ(outcome.report.refused.size(), 2u);
  ASSERT_EQ(seam.prompts.size(), 1u);
  const std::string& text = seam.prompts[0].message;
  EXPECT_NE(text.find("Desktop Icons: My Computer (a network share)"), std::string::npos) << text;
  EXPECT_NE(text.find("Pointers: Busy (an address)"), std::string::npos) << text;
  EXPECT_NE(text.find("\\\\evil\\share\\pc.ico,0"), std::string::npos) << text;
  // The rest of the theme was taken, including a theme-folder file whose name begins with backslashes.
  EXPECT_EQ(lists.ItemFullPath(vx::kTabDesktop, "In Box"), "C:\\ok.ico,1");
  EXPECT_EQ(lists.ItemFullPath(vx::kTabPointers, "Move"), folder.path() + "\\\\evil\\x.cur,0");
  EXPECT_EQ(lists.ItemFullPath(vx::kTabDesktop, "My Computer"), "C:\\Before\\My Computer.ico,1");
}

TEST_F(Commands, SavePathAsksWhereNeededAndEndsInTheExtension) {
  // overwrite: the answer to the question, -1 when not asked; chosen: the save dialog's answer.
  const struct { const char* current; bool saveAs; int overwrite; std::optional<std::string> chosen;
                 const char* result; bool dialog; } cases[] = {
      {"", false, -1, "C:\\T\\blue", "C:\\T\\blue.vxtheme", true},
      {"", true, -1, "C:\\T\\Blue.VXTHEME", "C:\\T\\Blue.VXTHEME", true},
      {"", true, -1, "C:\\T\\x.vxthem", "C:\\T\\x.vxthem.vxtheme", true},
      {"", true, -1, std::nullopt, "", true},
      {"C:\\T\\cur.vxtheme", false, 2, std::nullopt, "C:\\T\\cur.vxtheme", false},
      {"C:\\T\\cur.vxtheme", false, 1, "C:\\T\\other", "C:\\T\\other.vxtheme", true},
      {"C:\\T\\cur.vxtheme", false, 0, std::nullopt, "", false},
      {"C:\\T\\cur.vxtheme", true, -1, "C:\\T\\as", "C:\\T\\as.vxtheme", true},
  };
  for (const auto& c : cases) {
    seam.prompts.clear(), seam.fileDialogs.clear(), seam.promptAnswers.clear();
    if (c.overwrite >= 0) seam.promptAnswers = {{c.overwrite, false}};
    seam.files = {c.chosen};
    EXPECT_EQ(vx::ChooseSavePath(c.current, c.saveAs, nullptr), c.result) << c.current << " " << c.saveAs;
    ASSERT_EQ(seam.prompts.size(), c.overwrite >= 0 ? 1u : 0u);
    if (c.overwrite >= 0) { EXPECT_NE(seam.prompts[0].message.find("\n\ncur.vxtheme\n\n"), std::string::npos); }
    ASSERT_EQ(seam.fileDialogs.size(), c.dialog ? 1u : 0u);
    if (c.dialog) {
      EXPECT_EQ(seam.fileDialogs[0].title, "Save Theme");
      EXPECT_TRUE(seam.fileDialogs[0].save);
      EXPECT_EQ(seam.fileDialogs[0].filter, std::string("Icon Theme\0*.vxtheme\0", 21));
    }
  }
}

}  // namespace
