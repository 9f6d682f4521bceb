// frmPrompt: the modal dialog behind every question, warning and notice. The template in prompt.rc
// only lists the controls; the dialog sizes itself around the message when it opens, the way the
// system's message box does: icon at the top left, the message word-wrapped beside it on a white
// panel, the buttons at the bottom right of a grey band and the "do not show again" box at its left.
#include "ui/frmPrompt.h"

#include <windowsx.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "ids_prompt.h"
#include "ui/ModalDialog.h"
#include "ui/win.h"

namespace ui {
namespace {

constexpr int kSlots = 3;
constexpr UINT kComeForward = WM_APP + 1;

// Layout in dialog units, so that it follows the dialog font.
constexpr int kMarginX = 7, kMarginTop = 10, kMarginBottom = 10;
constexpr int kIconGap = 8;           // between the icon and the message
constexpr int kTextWidth = 230;       // the message wraps at this width (or wider when the band is)
constexpr int kButtonWidth = 50, kButtonHeight = 14, kButtonGap = 4, kButtonPadding = 12;
constexpr int kBandPadding = 7;       // above and below the buttons
constexpr int kCheckHeight = 10, kCheckBox = 14, kCheckGap = 12;

std::string WithoutMnemonic(const std::string& caption) {
  std::string out;
  for (size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    out += caption[i];
  }
  return out;
}

int SlotCaptioned(const PromptRequest& r, const char* caption) {
  for (int s = 0; s < kSlots; ++s)
    if (!r.buttons[s].empty() && WithoutMnemonic(r.buttons[s]) == caption) return s;
  return -1;
}

// The message as a static control shows it: each line feed becomes a line break, so two of them
// leave a blank line between paragraphs.
std::string DisplayText(const std::string& message) {
  std::string out;
  for (char c : message) {
    if (c == '\r') continue;
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

class PromptDialog : public ModalDialog {
 public:
  PromptDialog(HWND owner, const PromptRequest& request) : owner_(owner), request_(request) {}

  PromptAnswer Show() {
    INT_PTR rc = RunModal(IDD_PROMPT, owner_);
    // A dialog that could not be made answers as if the person had pressed Escape.
    if (rc == -1 || rc == 0) return {PromptCancelSlot(request_), false};
    return answer_;
  }

 private:
  INT_PTR HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override {
    switch (msg) {
      case WM_INITDIALOG:
        return OnInitDialog();
      case WM_COMMAND:
        OnCommand(LOWORD(wp), HIWORD(wp));
        return TRUE;
      case WM_HELP:
        OnHelpKey();
        return TRUE;
      case WM_PAINT:
        OnPaint();
        return TRUE;
      case kComeForward:
        SetForegroundWindow(hwnd());
        // The first window of a process can be activated before it is shown, and its caption then
        // stays drawn as inactive.
        if (GetActiveWindow() == hwnd()) SendMessageA(hwnd(), WM_NCACTIVATE, TRUE, 0);
        return TRUE;
      case WM_CTLCOLORSTATIC:
        return OnCtlColorStatic(reinterpret_cast<HDC>(wp), reinterpret_cast<HWND>(lp));
      default:
        return FALSE;
    }
  }

  HWND Button(int slot) const { return Item(IDC_PROMPT_BUTTON0 + slot); }

  INT_PTR OnInitDialog() {
    SetWindowTextA(hwnd(), "Vexillor");
    SetText(Item(IDC_PROMPT_TEXT), DisplayText(request_.message));

    char* end = nullptr;
    long iconId = std::strtol(request_.icon.c_str(), &end, 10);
    HICON icon = (end && *end == '\0' && iconId > 0 && iconId < 0x10000)
                     ? LoadIconA(nullptr, MAKEINTRESOURCEA(iconId))
                     : nullptr;
    if (icon) {
      SendMessageA(Item(IDC_PROMPT_ICON), STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
    } else {
      DestroyWindow(Item(IDC_PROMPT_ICON));
    }

    for (int s = 0; s < kSlots; ++s) {
      if (request_.buttons[s].empty()) {
        DestroyWindow(Button(s));
      } else {
        SetText(Button(s), request_.buttons[s]);
      }
    }
    if (request_.checkBox.empty()) {
      DestroyWindow(Item(IDC_PROMPT_CHECK));
    } else {
      SetText(Item(IDC_PROMPT_CHECK), request_.checkBox);
    }

    Layout();

    int def = PromptDefaultSlot(request_);
    if (def >= 0) {
      SendMessageA(hwnd(), DM_SETDEFID, IDC_PROMPT_BUTTON0 + def, 0);
      MoveFocusTo(Button(def));
    }
    // Without an owner to come back to, the prompt brings itself to the front once it is shown.
    if (!owner_) PostMessageA(hwnd(), kComeForward, 0, 0);
    return FALSE;  // the focus is set
  }

  // Sizes the dialog around the message and places the controls; see the file comment.
  void Layout() {
    auto dluX = [&](int x) {
      RECT r{0, 0, x, 0};
      MapDialogRect(hwnd(), &r);
      return static_cast<int>(r.right);
    };
    auto dluY = [&](int y) {
      RECT r{0, 0, 0, y};
      MapDialogRect(hwnd(), &r);
      return static_cast<int>(r.bottom);
    };
    HFONT font = reinterpret_cast<HFONT>(SendMessageA(hwnd(), WM_GETFONT, 0, 0));
    WindowDc dc(hwnd());
    SelectScope useFont(dc.get(), font);
    auto measure = [&](const std::string& text, UINT flags, int width) {
      RECT r{0, 0, width, 0};
      DrawTextA(dc.get(), text.c_str(), -1, &r, flags | DT_CALCRECT);
      return r;
    };

    HWND icon = Item(IDC_PROMPT_ICON);
    const int iconW = icon ? GetSystemMetrics(SM_CXICON) : 0;
    const int iconH = icon ? GetSystemMetrics(SM_CYICON) : 0;
    const int iconGap = icon ? dluX(kIconGap) : 0;
    const int marginX = dluX(kMarginX);

    // Buttons: all as wide as the widest caption needs, at least the usual width.
    int buttonW = dluX(kButtonWidth), count = 0;
    for (int s = 0; s < kSlots; ++s) {
      if (request_.buttons[s].empty()) continue;
      ++count;
      buttonW = std::max<int>(buttonW, measure(request_.buttons[s], DT_SINGLELINE, 0).right + dluX(kButtonPadding));
    }
    const int buttonH = dluY(kButtonHeight), buttonGap = dluX(kButtonGap);
    const int buttonsW = count ? count * buttonW + (count - 1) * buttonGap : 0;

    HWND check = Item(IDC_PROMPT_CHECK);
    const int checkW =
        check ? measure(request_.checkBox, DT_SINGLELINE, 0).right + dluX(kCheckBox) : 0;
    const int bandW = checkW + (check && count ? dluX(kCheckGap) : 0) + buttonsW;

    // The message wraps at the usual width, or at the band's when that is wider. A word longer than
    // a line (a deep path) is broken where the line ends, as an edit control does, rather than
    // stretching the dialog off the screen. These are the flags the static control draws with.
    const std::string text = DisplayText(request_.message);
    const UINT textFlags = DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX | DT_EDITCONTROL;
    const int wrap = std::max(dluX(kTextWidth), bandW - iconW - iconGap);
    RECT textRect = measure(text, textFlags, wrap);
    const int textW = static_cast<int>(textRect.right), textH = static_cast<int>(textRect.bottom);

    const int clientW = 2 * marginX + std::max(iconW + iconGap + textW, bandW);
    const int top = dluY(kMarginTop);
    const int panelH = top + std::max(iconH, textH) + dluY(kMarginBottom);
    const int bandH = 2 * dluY(kBandPadding) + buttonH;
    const int clientH = panelH + bandH;
    panelHeight_ = panelH;

    if (icon) SetWindowPos(icon, nullptr, marginX, top, iconW, iconH, SWP_NOZORDER | SWP_NOACTIVATE);
    // A short message stands level with the middle of the icon.
    const int textX = marginX + iconW + iconGap;
    const int textY = top + (textH < iconH ? (iconH - textH) / 2 : 0);
    SetWindowPos(Item(IDC_PROMPT_TEXT), nullptr, textX, textY, clientW - marginX - textX, textH,
                 SWP_NOZORDER | SWP_NOACTIVATE);

    const int buttonY = panelH + dluY(kBandPadding);
    int x = clientW - marginX;
    for (int s = 0; s < kSlots; ++s) {
      if (request_.buttons[s].empty()) continue;
      x -= buttonW;
      SetWindowPos(Button(s), nullptr, x, buttonY, buttonW, buttonH, SWP_NOZORDER | SWP_NOACTIVATE);
      x -= buttonGap;
    }
    if (check) {
      const int checkH = dluY(kCheckHeight);
      SetWindowPos(check, nullptr, marginX, buttonY + (buttonH - checkH) / 2, checkW, checkH,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    }

    // Centred on the owner when it is on screen, otherwise on the desktop, and kept on the desktop.
    SizeAndCentre(clientW, clientH, owner_);
  }

  // The message and icon stand on a window-coloured panel above the button band.
  void OnPaint() {
    PaintScope paint(hwnd());
    RECT client{};
    GetClientRect(hwnd(), &client);
    RECT panel = client;
    panel.bottom = panelHeight_;
    FillRect(paint.dc(), &panel, GetSysColorBrush(COLOR_WINDOW));
  }

  INT_PTR OnCtlColorStatic(HDC dc, HWND control) {
    int id = GetDlgCtrlID(control);
    if (id != IDC_PROMPT_TEXT && id != IDC_PROMPT_ICON) return FALSE;  // the check box sits on the band
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
  }

  void OnCommand(int id, int code) {
    if (id == IDCANCEL) {
      Close(PromptCancelSlot(request_));
    } else if (id == IDOK) {
      int def = PromptDefaultSlot(request_);
      if (def >= 0) Press(def);
    } else if (id >= IDC_PROMPT_BUTTON0 && id < IDC_PROMPT_BUTTON0 + kSlots && code == BN_CLICKED) {
      Press(id - IDC_PROMPT_BUTTON0);
    }
  }

  // Every button only answers with its slot: what a button stands for ("&Help", "&Settings...") is
  // done by the caller, so nothing is done twice.
  void Press(int slot) { Close(slot); }

  // F1 opens the prompt's own help topic, where it has one.
  void OnHelpKey() {
    if (request_.helpTopic == 0) return;
    GetSeam().OpenHelp(HelpOwner(), AppHelpFile(), HELP_CONTEXT, std::to_string(request_.helpTopic));
  }

  HWND HelpOwner() const { return owner_ ? owner_ : hwnd(); }

  void Close(int slot) {
    answer_.result = slot;
    HWND check = Item(IDC_PROMPT_CHECK);
    answer_.doNotShow = check && Button_GetCheck(check) == BST_CHECKED;
    EndDialog(hwnd(), 1);
  }

  HWND owner_;
  const PromptRequest& request_;
  int panelHeight_ = 0;
  PromptAnswer answer_;
};

}  // namespace

std::string AppHelpFile() {
  std::string path = ModulePath();
  size_t slash = path.find_last_of('\\');
  return (slash == std::string::npos ? std::string() : path.substr(0, slash)) + "\\help\\index.html";
}

std::string PromptHelpKeyword(const std::string& message) {
  const std::string start = message.substr(0, 10);
  if (start == "Vexillor h") return "Icon Cache";
  if (start == "Hiding Net") return "Hide, Network Neighborhood";
  if (start == "The progra") return "Introduction, Explorer";
  return "";
}

int PromptCancelSlot(const PromptRequest& request) {
  for (const char* caption : {"Cancel", "OK", "No"}) {
    int s = SlotCaptioned(request, caption);
    if (s >= 0) return s;
  }
  for (int s = 0; s < kSlots; ++s)
    if (!request.buttons[s].empty()) return s;
  return 0;
}

int PromptDefaultSlot(const PromptRequest& request) {
  for (int s = kSlots - 1; s >= 0; --s)
    if (!request.buttons[s].empty()) return s;
  return -1;
}

PromptAnswer RealSeam::ShowPrompt(HWND owner, const PromptRequest& request) {
  return PromptDialog(owner, request).Show();
}

}  // namespace ui
