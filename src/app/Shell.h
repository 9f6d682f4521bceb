#pragma once
// The main window's fixed furniture as data: toolbar buttons, accelerators, context-help topics, the
// maker's addresses, and the about box.
#include <windows.h>

#include <vector>

#include "system/Product.h"  // kHomePage, kAuthorMail

namespace vx {

struct ToolbarButton {
  const char* caption;  // nullptr: separator; also the tooltip
  int image;            // index in the toolbar image strip
  int command;
};

// The seventeen toolbar buttons, in order (indexes 3, 6, 9, 12 and 16 are separators).
const std::vector<ToolbarButton>& ToolbarButtons();

// Ctrl+O, Ctrl+S, F1, Ctrl+Tab and Ctrl+Shift+Tab (next and previous tab), Ctrl+PgDn/PgUp.
HACCEL CreateMainAccelerators();

// The help topic of a control id, 0 for none.
unsigned HelpTopicOf(int controlId);

// The about box.
void ShowAbout(HWND owner);

}  // namespace vx
