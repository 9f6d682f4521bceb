#include "ui/HelpPopup.h"

#include <algorithm>

#include "ui/seam.h"
#include "ui/win.h"

namespace ui {
namespace {

constexpr int kWidth = 300;  // the text wraps here (pixels at 96 dpi, scaled with the font)
constexpr int kMargin = 8, kLinkGap = 6;

class HelpPopup : public Window {
 public:
  bool Show(HWND owner, POINT at, const std::string& text, const std::string& target) {
    Destroy();
    owner_ = owner;
    text_ = text;
    target_ = target;
    if (!font_) MakeFonts();
    if (!Create(kHelpPopupClass, WS_EX_TOOLWINDOW | WS_EX_TOPMOST, WS_POPUP | WS_BORDER, text.c_str(), 0, 0, 10,
                10, owner, nullptr, 0, GetSysColorBrush(COLOR_INFOBK)))
      return false;
    Layout(at);
    ShowWindow(hwnd(), SW_SHOW);
    SetForegroundWindow(hwnd());
    SetFocus(hwnd());
    return true;
  }

  RECT linkRect() const { return hwnd() ? link_ : RECT{}; }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override {
    switch (msg) {
      case WM_PAINT: {
        PaintScope paint(hwnd());
        PaintContent(paint.dc());
        return 0;
      }
      case WM_PRINTCLIENT:
        PaintContent(reinterpret_cast<HDC>(wp));
        return 0;
      case WM_SETCURSOR:
        if (OverLink()) {
          HCURSOR hand = LoadCursorA(nullptr, IDC_HAND);
          SetCursor(hand ? hand : LoadCursorA(nullptr, IDC_ARROW));
          return TRUE;
        }
        break;
      case WM_LBUTTONDOWN: {
        POINT pt{static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))};
        if (HasLink() && PtInRect(&link_, pt)) {
          OpenTopic();
        } else {
          Destroy();
        }
        return 0;
      }
      case WM_RBUTTONDOWN:
      case WM_MBUTTONDOWN:
        Destroy();
        return 0;
      case WM_KEYDOWN:
        // Enter follows the link, as the only thing on the pop-up that does something; any other key
        // closes it.
        if (wp == VK_RETURN && HasLink()) {
          OpenTopic();
        } else {
          Destroy();
        }
        return 0;
      case WM_ACTIVATE:
        // A click elsewhere takes the activation away; close once the switch is over.
        if (LOWORD(wp) == WA_INACTIVE) PostMessageA(hwnd(), WM_CLOSE, 0, 0);
        break;
      case WM_CLOSE:
        Destroy();
        return 0;
    }
    return Default(msg, wp, lp);
  }

 private:
  bool HasLink() const { return !target_.empty(); }

  bool OverLink() const {
    if (!HasLink()) return false;
    POINT pt{};
    GetCursorPos(&pt);
    ScreenToClient(hwnd(), &pt);
    return PtInRect(&link_, pt) != FALSE;
  }

  void OpenTopic() {
    const std::string target = target_;
    const HWND owner = owner_;
    Destroy();
    GetSeam().ShellOpen(owner, target);
  }

  void MakeFonts() {
    NONCLIENTMETRICSA ncm{};
    ncm.cbSize = sizeof ncm;
    LOGFONTA lf{};
    if (SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof ncm, &ncm, 0)) {
      lf = ncm.lfStatusFont;
    } else {
      GetObjectA(GetStockObject(DEFAULT_GUI_FONT), sizeof lf, &lf);
    }
    font_.reset(CreateFontIndirectA(&lf));
    lf.lfUnderline = TRUE;
    linkFont_.reset(CreateFontIndirectA(&lf));
  }

  int Scaled(int pixels) const {
    WindowDc dc(hwnd());
    return MulDiv(pixels, GetDeviceCaps(dc.get(), LOGPIXELSX), 96);
  }

  void Layout(POINT at) {
    const int margin = Scaled(kMargin), wrap = Scaled(kWidth);
    WindowDc dc(hwnd());
    RECT textRect{0, 0, wrap, 0};
    {
      SelectScope use(dc.get(), font_.get());
      DrawTextA(dc.get(), text_.c_str(), -1, &textRect, DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    }
    int width = textRect.right, height = textRect.bottom;
    textRect_ = {margin, margin, margin + width, margin + height};
    link_ = RECT{};
    if (HasLink()) {
      RECT r{0, 0, 0, 0};
      SelectScope use(dc.get(), linkFont_.get());
      DrawTextA(dc.get(), kHelpPopupLink, -1, &r, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
      const int top = margin + height + Scaled(kLinkGap);
      link_ = {margin, top, margin + r.right, top + r.bottom};
      width = std::max<int>(width, r.right);
      height = link_.bottom - margin;
    }
    RECT frame{0, 0, width + 2 * margin, height + 2 * margin};
    AdjustWindowRectEx(&frame, WS_POPUP | WS_BORDER, FALSE, WS_EX_TOOLWINDOW | WS_EX_TOPMOST);
    const int w = frame.right - frame.left, h = frame.bottom - frame.top;

    // Centred under the point, as the system's pop-ups stand; above it when there is no room below.
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    int x = at.x - w / 2, y = at.y + Scaled(12);
    if (y + h > work.bottom) y = at.y - Scaled(4) - h;
    x = std::max<int>(work.left, std::min<int>(x, work.right - w));
    y = std::max<int>(work.top, std::min<int>(y, work.bottom - h));
    SetWindowPos(hwnd(), HWND_TOPMOST, x, y, w, h, SWP_NOACTIVATE);
  }

  void PaintContent(HDC dc) {
    RECT client{};
    GetClientRect(hwnd(), &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_INFOBK));
    SetBkMode(dc, TRANSPARENT);
    {
      SelectScope use(dc, font_.get());
      SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
      RECT r = textRect_;
      DrawTextA(dc, text_.c_str(), -1, &r, DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    }
    if (HasLink()) {
      SelectScope use(dc, linkFont_.get());
      SetTextColor(dc, kLinkColour);
      RECT r = link_;
      DrawTextA(dc, kHelpPopupLink, -1, &r, DT_SINGLELINE | DT_NOPREFIX);
    }
  }

  HWND owner_ = nullptr;
  std::string text_, target_;
  FontHandle font_, linkFont_;
  RECT textRect_{}, link_{};
};

HelpPopup& Popup() {
  static HelpPopup popup;
  return popup;
}

}  // namespace

HWND ShowHelpPopup(HWND owner, POINT at, const std::string& text, const std::string& target) {
  return Popup().Show(owner, at, text, target) ? Popup().hwnd() : nullptr;
}

HWND HelpPopupWindow() { return Popup().hwnd(); }

void CloseHelpPopup() { Popup().Destroy(); }

RECT HelpPopupLinkRect() { return Popup().linkRect(); }

}  // namespace ui
