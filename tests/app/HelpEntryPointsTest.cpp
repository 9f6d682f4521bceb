// Every way into the help names something the shipped help folder (beside vexillor.exe) really has.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "app/Shell.h"
#include "resource.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/HelpTopics.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"
#include "ui/win.h"

namespace {

std::string Folder(const std::string& path) { return path.substr(0, path.find_last_of('\\')); }

bool FileExists(const std::string& path) {
  DWORD a = GetFileAttributesA(path.c_str());
  return a != INVALID_FILE_ATTRIBUTES && !(a & FILE_ATTRIBUTE_DIRECTORY);
}

// The pages of the help folder and the ids (anchors) and links each one holds.
struct Page { std::set<std::string> ids; std::vector<std::string> links; };

std::map<std::string, Page> ReadPages(const std::string& dir) {
  std::map<std::string, Page> pages;
  WIN32_FIND_DATAA found;
  HANDLE h = FindFirstFileA((dir + "\\*.html").c_str(), &found);
  for (bool more = h != INVALID_HANDLE_VALUE; more; more = FindNextFileA(h, &found)) {
    std::stringstream text;
    text << std::ifstream(dir + "\\" + found.cFileName, std::ios::binary).rdbuf();
    const std::string html = text.str();
    Page& page = pages[found.cFileName];
    static const std::regex id(R"( id="([^"]+)\")"), href(R"(href="([^"]+)\")");
    for (std::sregex_iterator m(html.begin(), html.end(), id), end; m != end; ++m) page.ids.insert((*m)[1]);
    for (std::sregex_iterator m(html.begin(), html.end(), href), end; m != end; ++m) page.links.push_back((*m)[1]);
  }
  if (h != INVALID_HANDLE_VALUE) FindClose(h);
  return pages;
}

class HelpEntryPoints : public ::testing::Test {
 protected:
  // The help as it ships: build\help beside vexillor.exe (the tests run from build\tests).
  void SetUp() override {
    dir = Folder(Folder(ui::ModulePath())) + "\\help";
    ASSERT_TRUE(FileExists(dir + "\\index.html")) << "no help beside the built program";
    pages = ReadPages(dir);
  }
  // Empty when "page#anchor" is in the shipped help, else what is missing.
  std::string Missing(const std::string& target) const {
    const size_t hash = target.find('#');
    const std::string file = target.substr(0, hash);
    auto page = pages.find(file);
    if (page == pages.end()) return "no page " + file;
    if (hash != std::string::npos && !page->second.ids.count(target.substr(hash + 1)))
      return "no anchor " + target;
    return "";
  }
  std::string dir;
  std::map<std::string, Page> pages;
};

// Every topic, keyword and contents page leads to a place that exists; every control of the main window
// and every setting number of the Shell tab (the tree's own is 74) has a topic, each setting its own place.
TEST_F(HelpEntryPoints, EveryTopicKeywordControlAndSettingLeadsToAPlaceThatExists) {
  std::set<unsigned> numbers;
  for (const auto& t : ui::HelpTopics()) {
    EXPECT_TRUE(numbers.insert(t.number).second) << "number " << t.number << " twice";
    EXPECT_EQ(Missing(t.page), "") << "topic " << t.number;
    // A pop-up is a few sentences: long enough to say something, short enough for a small window.
    const std::string popup = t.popup;
    EXPECT_TRUE(popup.size() >= 40 && popup.size() <= 260 && popup.back() == '.') << t.number << ": " << popup;
  }
  for (const auto& k : ui::HelpKeywords()) EXPECT_EQ(Missing(k.page), "") << k.keyword;
  EXPECT_EQ(Missing(ui::kHelpContentsPage), "");
  for (int id : {IDC_TOOLBAR, IDC_TABSTRIP, IDC_INFOBAR, IDC_CHANGE, IDC_DEFAULT, IDC_RENAME, IDOK, IDCANCEL,
                 IDC_APPLY, IDC_SETTINGS_TREE, IDC_FOLDER_TREE, IDC_HELPBTN, IDC_LIST_FIRST + 2, IDC_LIST_FIRST + 3,
                 IDC_LIST_FIRST + 4, IDC_LIST_FIRST + 5, IDC_LIST_FIRST + 6, IDC_LIST_FIRST + 7, IDC_LIST_FIRST + 9})
    EXPECT_NE(ui::FindHelpTopic(vx::HelpTopicOf(id)), nullptr) << "control " << id;
  const unsigned settings[] = {23, 25, 26, 27, 28, 29, 30, 31, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44,
                               45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 74};
  std::set<std::string> pagesUsed;
  for (unsigned n : settings) {
    const ui::HelpTopic* topic = ui::FindHelpTopic(n);
    ASSERT_NE(topic, nullptr) << n;
    pagesUsed.insert(topic->page);
  }
  EXPECT_EQ(pagesUsed.size(), std::size(settings));
  // The Help button, F1 and Contents open the contents beside the running program.
  EXPECT_EQ(ui::AppHelpFile(), Folder(ui::ModulePath()) + "\\help\\index.html");
}

TEST_F(HelpEntryPoints, ThePagesLinkOnlyToPagesAndAnchorsThatExist) {
  EXPECT_GE(pages.size(), 15u);
  for (const auto& [name, page] : pages)
    for (const std::string& link : page.links) {
      if (link.rfind("http", 0) == 0 || link.rfind("mailto:", 0) == 0) continue;
      if (link.find(".css") != std::string::npos)
        EXPECT_TRUE(FileExists(dir + "\\" + link)) << name << " -> " << link;
      else
        EXPECT_EQ(Missing(link[0] == '#' ? name + link : link), "") << "in " << name;
    }
}

// The prompts with a Help button (the network warning and the rebuild notice) find their keyword's page,
// the rebuild notice its topic; the third keyword belongs to a message of the Explorer tab.
TEST_F(HelpEntryPoints, EveryPromptWithHelpFindsItsPage) {
  vxtest::RegistryScope keys({vxtest::kProgramKey + "\\Settings"});
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  modMsgbox::HideNetworkNeighborhood();
  modMsgbox::RebuildNotice("Windows 95");
  ASSERT_EQ(seam.prompts.size(), 2u);
  EXPECT_NE(ui::FindHelpTopic(static_cast<unsigned>(seam.prompts[1].helpTopic)), nullptr);
  std::vector<std::string> keywords = {"Introduction, Explorer"};
  for (const auto& p : seam.prompts) keywords.push_back(ui::PromptHelpKeyword(p.message));
  EXPECT_EQ(ui::PromptHelpKeyword("The program could not read this folder."), keywords[0]);
  const auto& all = ui::HelpKeywords();  // in the index as it is, not only the start of an entry
  for (const std::string& keyword : keywords) {
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const ui::HelpKeyword& k) { return keyword == k.keyword; }))
        << keyword;
    EXPECT_EQ(Missing(ui::HelpPageOfKeyword(keyword)), "") << keyword;
  }
}

// What each request opens: a page path, a file: address for a place on a page, the contents otherwise.
TEST(HelpRequests, OpenTheTopicsPageOrTheContents) {
  const std::string help = "C:\\Program Files\\Vexillor\\help\\", file = help + "index.html";
  const struct { unsigned command; const char* keyword; std::string opens; } cases[] = {
      {HELP_CONTEXT, "4600", help + "icon-cache.html"},
      {HELP_CONTEXT, "23", "file:///C:/Program%20Files/Vexillor/help/shell.html#beep-on-errors"},
      {HELP_CONTEXT, "1090", help + "shell.html"},
      {HELP_CONTEXT, "9999", file},       // no such topic
      {HELP_CONTEXT, "23x", file},        // not a number
      {HELP_CONTEXT, "", file},
      {HELP_PARTIALKEY, "Icon Cache", help + "icon-cache.html"},
      {HELP_PARTIALKEY, "hide, network", help + "network.html"},  // the start of a keyword, any case
      {HELP_PARTIALKEY, "Introduction, Explorer", help + "explorer.html"},
      {HELP_KEY, "Themes", help + "themes.html"},
      {HELP_PARTIALKEY, "Nothing like it", file},
      {HELP_PARTIALKEY, "", file},
      {HELP_CONTENTS, "", file},
      {HELP_FINDER, "", file},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ui::HelpRequestTarget(file, c.command, c.keyword), c.opens) << c.command << " " << c.keyword;
  // Characters that an address cannot carry are escaped; a help folder without a path still works.
  EXPECT_EQ(ui::HelpTarget("D:\\A#B 100%\\help\\index.html", "shell.html#drag"),
            "file:///D:/A%23B%20100%25/help/shell.html#drag");
  EXPECT_EQ(ui::HelpTarget("index.html", "themes.html"), "themes.html");
}

}  // namespace
