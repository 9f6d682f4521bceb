// The quiet switch: what is taken off the command line, and how a quiet run answers in the user's
// stead and what it writes to its log.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>

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

}  // namespace
