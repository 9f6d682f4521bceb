// The "/?" text: every switch on a line of its own with an example, shown in a box or written out.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <sstream>

#include "app/Usage.h"
#include "support/ScriptedSeam.h"

namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2)
    lines.push_back(text.substr(start, end - start));
  EXPECT_EQ(start, text.size()) << "the text ends with a line break";
  return lines;
}

TEST(Usage, NamesEverySwitchOnALineOfItsOwnWithAnExample) {
  const std::string text = vx::UsageText();
  const auto lines = Lines(text);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0].rfind("Vexillor 2.06", 0), 0u) << "the version from the version resource";
  // Each switch: exactly one line that starts with it (after the indent), followed by its meaning.
  for (const char* sw : {"THEME", "/a THEME", "/n THEME", "/undo", "/q", "/?"}) {
    int found = 0;
    for (const auto& line : lines) {
      if (line.rfind(std::string("  ") + sw + " ", 0) != 0) continue;
      ++found;
      EXPECT_GT(line.size(), std::string(sw).size() + 20) << sw << ": no meaning beside it";
    }
    EXPECT_EQ(found, 1) << sw;
  }
  EXPECT_EQ(vx::UsageLines().size(), 6u) << "a new switch needs its line checked here";
  // The meanings start in one column.
  size_t column = std::string::npos;
  for (const auto& l : vx::UsageLines()) {
    for (const auto& line : lines) {
      if (line.find(l.meaning) == std::string::npos) continue;
      const size_t at = line.find(l.meaning);
      if (column == std::string::npos) column = at;
      EXPECT_EQ(at, column) << l.syntax;
    }
  }
  // Short lines: a message box shows each on one line, a console too.
  for (const auto& line : lines) EXPECT_LE(line.size(), 50u) << line;
  // What /q promises and an example that uses the switches together.
  EXPECT_NE(text.find("%APPDATA%\\Vexillor\\vexillor.log"), std::string::npos);
  EXPECT_NE(text.find("Example:\r\n  vexillor /q /a \""), std::string::npos);
}

TEST(Usage, IsAskedForByQuestionMarkFirstOrAfterQuiet) {
  const struct { const char* line; bool asks; } cases[] = {
      {"/?", true},          {"-?", true},       {"  /?  ", true},  {"/q /?", true}, {"/Q -?", true},
      {"", false},           {"/a /?", false},   {"theme.vxtheme /?", false},      {"/??", false},
      {"\"/?\"", false},     {"/q", false},      {"/qx /?", false},
  };
  for (const auto& c : cases) EXPECT_EQ(vx::AsksForUsage(c.line), c.asks) << c.line;
}

TEST(Usage, IsWrittenToAFileOrShownInAMessageBox) {
  char dir[MAX_PATH];
  const std::string path = std::string(dir, GetTempPathA(MAX_PATH, dir)) + "vx_usage_" +
                           std::to_string(GetCurrentProcessId()) + ".txt";
  HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_TRUE(vx::WriteUsage(file));
  CloseHandle(file);
  std::ifstream in(path, std::ios::binary);
  std::stringstream got;
  got << in.rdbuf();
  in.close();
  DeleteFileA(path.c_str());
  EXPECT_EQ(got.str(), vx::UsageText());
  EXPECT_FALSE(vx::WriteUsage(INVALID_HANDLE_VALUE));
  EXPECT_FALSE(vx::WriteUsage(nullptr));

  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  EXPECT_EQ(vx::ShowUsage(false), 0);
  ASSERT_EQ(seam.messages.size(), 1u);
  EXPECT_EQ(seam.messages[0].text, vx::UsageText());
  EXPECT_EQ(seam.messages[0].title, "Vexillor");
  EXPECT_EQ(seam.messages[0].flags, static_cast<unsigned>(MB_OK | MB_ICONINFORMATION));
}

}  // namespace
