#pragma once
// frmPrompt: the program's own modal message dialog. RealSeam::ShowPrompt shows it; these helpers are
// the rules it follows, public so that other code (and the tests) use the same ones.
#include <string>

#include "ui/seam.h"

namespace ui {

// The program's help: its contents page, the program folder + "\help\index.html". The one place that
// knows where the help lives (ui/HelpTopics.h knows the pages beside it).
std::string AppHelpFile();

// The keyword that the "&Help" button opens, chosen by the first ten characters of the message;
// empty when the message has no help of its own.
std::string PromptHelpKeyword(const std::string& message);

// The slot that Escape and the close box answer with: the "Cancel" button when there is one, else
// "OK", else "No", else the rightmost button.
int PromptCancelSlot(const PromptRequest& request);

// The leftmost button, the one that Enter presses.
int PromptDefaultSlot(const PromptRequest& request);

}  // namespace ui
