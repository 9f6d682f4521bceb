#pragma once
// The help document's map: which page (and place on it) each context-help number and each prompt
// keyword leads to, and the short text of a number's pop-up. The help itself is a folder of HTML
// pages shipped beside the program as "help\index.html" and its neighbours.
#include <string>
#include <vector>

namespace ui {

struct HelpTopic {
  unsigned number;    // context-help number: a control, a setting of the Shell tab, a prompt
  const char* page;   // page of the help folder, with an "#anchor" where the topic is a part of it
  const char* popup;  // what the pop-up shows: a few sentences as a person reads them
};

struct HelpKeyword {
  const char* keyword;  // as the prompts' "&Help" button asks for it
  const char* page;
};

const std::vector<HelpTopic>& HelpTopics();
const std::vector<HelpKeyword>& HelpKeywords();

// The topic of a number, or nullptr.
const HelpTopic* FindHelpTopic(unsigned number);

// A setting's topic on a Windows that ignores the setting: the same page, and the pop-up with a note
// that the setting does nothing here.
inline constexpr unsigned kNoEffectTopics = 10000;
inline constexpr unsigned NoEffectTopic(unsigned number) { return kNoEffectTopics + number; }
inline constexpr const char* kNoEffectNote =
    "This version of Windows ignores this setting: changing it has no effect here.";

// The pop-up text of a number that has no topic of its own.
inline constexpr const char* kNoHelpText = "No Help topic is associated with this item.";

// The contents page, the one page that every other page links back to.
inline constexpr const char* kHelpContentsPage = "index.html";

// The page of a keyword. A partial keyword finds the first keyword that begins with it (case is
// ignored, as the keyword index of a help file did); an unknown one leads to the contents.
std::string HelpPageOfKeyword(const std::string& keyword);

// What the shell is asked to open for a page of the help folder that holds helpFile (the contents
// page): the file's path, or a file: address when the page is wanted at an anchor.
std::string HelpTarget(const std::string& helpFile, const std::string& page);

// What a help request opens, by the WinHelp command it carries (HELP_CONTEXT with the number in
// decimal text, HELP_KEY or HELP_PARTIALKEY with a keyword, anything else the contents).
std::string HelpRequestTarget(const std::string& helpFile, unsigned command, const std::string& keyword);

}  // namespace ui
