// The quiet switch: what is taken off the command line, and how a quiet run answers in the user's
// stead and what it writes to its log.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <sstream>

#include "app/CommandLine.h"

namespace {

TEST(CommandLine, TheQuietSwitchComesFirst) {
  const struct {
    const char* text;
    bool quiet;
    const char* rest;
  } cases[] = {
      {"/q /a C:\\Themes\\Blue.vxtheme", true, "/a C:\\Themes\\Blue.vxtheme"},
      {"/q C:\\Themes\\Blue.vxtheme", true, "C:\\Themes\\Blue.vxtheme"},
      {"/q", true, ""},
      {"/Q /a C:\\x.vxtheme", false, "/Q /a C:\\x.vxtheme"},
      {"/a /q C:\\x.vxtheme", false, "/a /q C:\\x.vxtheme"},
      {"/qa C:\\x.vxtheme", false, "/qa C:\\x.vxtheme"},
      {"C:\\x.vxtheme", false, "C:\\x.vxtheme"},
      {"", false, ""},
  };
  for (const auto& c : cases) {
    const vx::CommandLine parsed = vx::ParseCommandLine(c.text);
    EXPECT_EQ(parsed.quiet, c.quiet) << c.text;
    EXPECT_EQ(parsed.rest, c.rest) << c.text;
  }
}

TEST(CommandLine, AQuietRunAnswersAndLogsEveryAnswer) {
  char temp[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, temp);
  const std::string folder = std::string(temp) + "vxquiet";
  const std::string log = folder + "\\vexillor.log";
  DeleteFileA(log.c_str());
  RemoveDirectoryA(folder.c_str());
  {
    vx::QuietRun run(log);
    ui::Seam& seam = run.seam();
    auto request = [](const char* text, std::array<std::string, 3> buttons, const char* box = "") {
      ui::PromptRequest r;
      r.message = text;
      r.buttons = buttons;
      r.checkBox = box;
      return r;
    };
    const ui::PromptRequest restart = request("Restart now?\n\nReally?", {"No", "Yes", ""});
    const ui::PromptRequest save = request("Save?", {"&Cancel", "No", "Yes"});
    const ui::PromptRequest notice = request("Rebuilt.", {"OK", "", ""}, "Do not show this dialog again");
    EXPECT_EQ(seam.ShowPrompt(nullptr, restart).result, 0);
    EXPECT_EQ(seam.ShowPrompt(nullptr, save).result, 1);
    const ui::PromptAnswer a = seam.ShowPrompt(nullptr, notice);
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
  EXPECT_NE(lines[0].find("answered \"No\": Restart now?"), std::string::npos) << lines[0];
  EXPECT_EQ(lines[0].find("Really"), std::string::npos);
  EXPECT_NE(lines[1].find("answered \"No\": Save?"), std::string::npos) << lines[1];
  EXPECT_NE(lines[2].find("answered \"OK\": Rebuilt."), std::string::npos) << lines[2];
  EXPECT_NE(lines[4].find("file dialog not shown: Open Theme"), std::string::npos) << lines[4];
  EXPECT_NE(lines[5].find("write: a line  with a break"), std::string::npos) << lines[5];
  DeleteFileA(log.c_str());
  RemoveDirectoryA(folder.c_str());
}

}  // namespace
