// The command line: the quiet switch, what a quiet run answers and logs, and the "/?" text.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <set>
#include <sstream>

#include "app/CommandLine.h"
#include "app/Usage.h"
#include "support/ScriptedSeam.h"

namespace {

TEST(CommandLine, SwitchesInAnyCaseAndOrderWithSlashOrHyphen) {
  using C = vx::CommandLine;
  const struct { const char* text; bool quiet; C::Action action; const char* theme; bool error; } cases[] = {
      {"/q /a C:\\Themes\\Blue.vxtheme", true, C::Apply, "C:\\Themes\\Blue.vxtheme", false},
      {"/Q /A C:\\x.vxtheme", true, C::Apply, "C:\\x.vxtheme", false},
      {"-q -a \"C:\\My Themes\\x.vxtheme\"", true, C::Apply, "C:\\My Themes\\x.vxtheme", false},
      {"/a /q  C:\\My Themes\\x.vxtheme ", true, C::Apply, "C:\\My Themes\\x.vxtheme", false},
      {"/q C:\\Themes\\Blue.vxtheme", true, C::Open, "C:\\Themes\\Blue.vxtheme", false},
      {"/q", true, C::Open, "", false},
      {"/N blue.vxtheme", false, C::Review, "blue.vxtheme", false},
      {"/q /UNDO", true, C::Undo, "", false},
      {"-blue.vxtheme", false, C::Open, "-blue.vxtheme", false},  // a file name, not a switch
      {"C:\\x.vxtheme", false, C::Open, "C:\\x.vxtheme", false},
      {"", false, C::Open, "", false},
      // Usage errors: switches that do not go together, an unknown one, "/n" or "/undo" out of place.
      {"/n /a C:\\x.vxtheme", false, C::Apply, "", true},
      {"/q /a /n C:\\x.vxtheme", true, C::Review, "", true},
      {"/qa C:\\x.vxtheme", false, C::Open, "", true},
      {"/n", false, C::Review, "", true},
      {"/undo C:\\x.vxtheme", false, C::Undo, "", true},
  };
  for (const auto& c : cases) {
    const vx::CommandLine parsed = vx::ParseCommandLine(c.text);
    EXPECT_EQ(parsed.quiet, c.quiet) << c.text;
    EXPECT_EQ(parsed.error.empty(), !c.error) << c.text << ": " << parsed.error;
    if (c.error) continue;
    EXPECT_EQ(parsed.action, c.action) << c.text;
    EXPECT_EQ(parsed.theme, c.theme) << c.text;
  }
}

TEST(CommandLine, AQuietRunAnswersAndLogsEveryAnswer) {
  char temp[MAX_PATH] = {};
  const std::string folder = std::string(temp, GetTempPathA(MAX_PATH, temp)) + "vxquiet", log = folder + "\\vexillor.log";
  DeleteFileA(log.c_str());
  RemoveDirectoryA(folder.c_str());
  {
    vx::QuietRun run(log);
    ui::Seam& seam = run.seam();
    auto request = [](const char* text, std::array<std::string, 3> buttons, const char* box = "") {
      ui::PromptRequest r;
      r.message = text, r.buttons = buttons, r.checkBox = box;
      return r;
    };
    EXPECT_EQ(seam.ShowPrompt(nullptr, request("Restart now?\n\nReally?", {"No", "Yes", ""})).result, 0);
    EXPECT_EQ(seam.ShowPrompt(nullptr, request("Save?", {"&Cancel", "No", "Yes"})).result, 1);
    const ui::PromptAnswer a =
        seam.ShowPrompt(nullptr, request("Rebuilt.", {"OK", "", ""}, "Do not show this dialog again"));
    EXPECT_EQ(a.result, 0);
    EXPECT_FALSE(a.doNotShow);
    EXPECT_EQ(seam.ShowMessage(nullptr, "x", "t", MB_YESNO), IDNO);
    ui::FileDialog d;
    d.title = "Open Theme";
    EXPECT_FALSE(seam.ShowFileDialog(nullptr, d));
    run.Log("write: a line\r\nwith a break");
  }
  std::ifstream in(log);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_EQ(lines.size(), 6u);
  const char* logged[] = {"answered \"No\": Restart now?", "answered \"No\": Save?", "answered \"OK\": Rebuilt.", "",
                          "file dialog not shown: Open Theme", "write: a line  with a break"};
  for (size_t i = 0; i < lines.size(); ++i) EXPECT_NE(lines[i].find(logged[i]), std::string::npos) << lines[i];
  EXPECT_EQ(lines[0].find("Really"), std::string::npos);
  DeleteFileA(log.c_str());
  RemoveDirectoryA(folder.c_str());
}

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
  std::set<size_t> columns;
  for (const auto& l : vx::UsageLines())
    for (const auto& line : lines)
      if (line.find(l.meaning) != std::string::npos) columns.insert(line.find(l.meaning));
  EXPECT_EQ(columns.size(), 1u);
  // Short lines: a message box shows each on one line, a console too.
  for (const auto& line : lines) EXPECT_LE(line.size(), 50u) << line;
  // Every exit code a script can get, each on a line of its own with its meaning.
  std::vector<int> codes;
  for (const auto& e : vx::ExitCodeLines()) {
    codes.push_back(e.code);
    EXPECT_NE(text.find("\r\n  " + std::to_string(e.code) + " "), std::string::npos) << e.code;
  }
  EXPECT_EQ(codes, (std::vector<int>{vx::kExitOk, vx::kExitNoWindow, vx::kExitThemeNotOpened, vx::kExitNotApplied,
                                     vx::kExitEntryRefused, vx::kExitWriteFailed, vx::kExitNothingToUndo,
                                     vx::kExitNoJournal, vx::kExitJournalRefused, vx::kExitAlreadyRunning,
                                     vx::kExitNothingLoaded}));
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
  std::stringstream got;
  got << std::ifstream(path, std::ios::binary).rdbuf();
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
