#pragma once
// The context-help pop-up: a small bordered window near the pointer with the short text of a control
// or setting and, where the help has a full topic for it, a link that opens it. Any click or key
// elsewhere closes it, as the pop-ups of the system's own context help do.
#include <windows.h>

#include <string>

namespace ui {

inline constexpr const char* kHelpPopupClass = "VxHelpPopup";
inline constexpr const char* kHelpPopupLink = "Read the full topic";
// The colour of the program's links (the pop-up's and the about box's): the blue every browser uses,
// as the system's own hot-light colour is pale under some colour schemes.
inline constexpr COLORREF kLinkColour = RGB(0, 0, 238);

// Shows the pop-up (closing one that is already open) with its top edge just below `at`, in screen
// coordinates, kept on the work area. An empty `target` shows no link; the link gives `target` to
// the seam's ShellOpen. Returns the pop-up window, whose window text is `text`.
HWND ShowHelpPopup(HWND owner, POINT at, const std::string& text, const std::string& target);

// The pop-up on show, or nullptr; and closing it.
HWND HelpPopupWindow();
void CloseHelpPopup();

// Where the link stands, in the pop-up's client coordinates (empty when it has none).
RECT HelpPopupLinkRect();

}  // namespace ui
