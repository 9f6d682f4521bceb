#include "ui/win.h"

#include <commctrl.h>

#include <cstdio>

namespace ui {

void ImageListTraits::Close(HIMAGELIST h) { ImageList_Destroy(h); }

namespace {
int g_pointer = MousePointer::kDefault;
}

void MousePointer::Set(int code) {
  g_pointer = code;
  LPCSTR id = code == kHourglass ? IDC_WAIT : code == kArrowHourglass ? IDC_APPSTARTING : IDC_ARROW;
  SetCursor(LoadCursorA(nullptr, id));
}

int MousePointer::Current() { return g_pointer; }

Window::~Window() { Destroy(); }

void Window::Destroy() {
  if (hwnd_) {
    HWND h = hwnd_;
    SetWindowLongPtrA(h, GWLP_USERDATA, 0);
    hwnd_ = nullptr;
    DestroyWindow(h);
  }
}

bool RegisterWindowClass(const char* className, WNDPROC proc, UINT classStyle, HBRUSH background, HICON icon) {
  HINSTANCE inst = GetModuleHandleA(nullptr);
  WNDCLASSEXA wc{};
  wc.cbSize = sizeof wc;
  if (GetClassInfoExA(inst, className, &wc)) return true;
  wc = WNDCLASSEXA{};
  wc.cbSize = sizeof wc;
  wc.style = classStyle;
  wc.lpfnWndProc = proc;
  wc.hInstance = inst;
  wc.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  wc.hbrBackground = background;
  wc.lpszClassName = className;
  wc.hIcon = icon;
  return RegisterClassExA(&wc) != 0;
}

bool Window::Create(const char* className, DWORD exStyle, DWORD style, const char* title, int x, int y,
                    int w, int h, HWND parent, HMENU menuOrId, UINT classStyle, HBRUSH background,
                    HICON icon) {
  if (!RegisterWindowClass(className, &Window::Proc, classStyle, background, icon)) return false;
  return CreateWindowExA(exStyle, className, title, style, x, y, w, h, parent, menuOrId, GetModuleHandleA(nullptr),
                         this) != nullptr;
}

LRESULT Window::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) { return Default(msg, wp, lp); }

LRESULT CALLBACK Window::Proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  Window* self = nullptr;
  if (msg == WM_NCCREATE) {
    self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTA*>(lp)->lpCreateParams);
    self->hwnd_ = hwnd;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  } else {
    self = reinterpret_cast<Window*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
  }
  if (!self) return DefWindowProcA(hwnd, msg, wp, lp);
  try {
    LRESULT r = self->HandleMessage(msg, wp, lp);
    if (msg == WM_NCDESTROY) {
      SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
      self->hwnd_ = nullptr;
    }
    return r;
  } catch (...) {
    return DefWindowProcA(hwnd, msg, wp, lp);
  }
}

BackBuffer::~BackBuffer() { Release(); }

void BackBuffer::Release() {
  if (dc_ && old_) SelectObject(dc_.get(), old_);
  old_ = nullptr;
}

void BackBuffer::Resize(int w, int h, bool keep) {
  w = w > 0 ? w : 0;
  h = h > 0 ? h : 0;
  if (bitmap_ && w == width_ && h == height_) {
    if (!keep) Clear();
    return;
  }
  MemDc dc;
  BitmapHandle bitmap;
  HGDIOBJ old = nullptr;
  if (w > 0 && h > 0) {
    WindowDc screen(nullptr);
    dc.reset(CreateCompatibleDC(screen.get()));
    bitmap.reset(CreateCompatibleBitmap(screen.get(), w, h));
  }
  if (dc && bitmap) {
    old = SelectObject(dc.get(), bitmap.get());
    RECT all{0, 0, w, h};
    FillRect(dc.get(), &all, GetSysColorBrush(COLOR_WINDOW));
    if (keep && bitmap_) BitBlt(dc.get(), 0, 0, width_, height_, dc_.get(), 0, 0, SRCCOPY);
  } else {
    dc.reset();
    bitmap.reset();
  }
  Release();
  dc_ = std::move(dc);
  bitmap_ = std::move(bitmap);
  old_ = old;
  width_ = w;
  height_ = h;
}

void BackBuffer::Clear() {
  RECT all{0, 0, width_, height_};
  if (bitmap_) FillRect(dc_.get(), &all, GetSysColorBrush(COLOR_WINDOW));
}

void BackBuffer::Blit(HDC dc, const RECT& r) const {
  if (bitmap_) {
    BitBlt(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, dc_.get(), r.left, r.top, SRCCOPY);
  } else {
    FillRect(dc, &r, GetSysColorBrush(COLOR_WINDOW));
  }
}

LRESULT BackBuffer::Paint(HWND hwnd, UINT msg, WPARAM wp) const {
  if (msg == WM_PRINTCLIENT) {
    RECT all{0, 0, width_, height_};
    Blit(reinterpret_cast<HDC>(wp), all);
  } else {
    PaintScope paint(hwnd);
    Blit(paint.dc(), paint.rect());
  }
  return 0;
}

std::string GetText(HWND hwnd) {
  int n = GetWindowTextLengthA(hwnd);
  std::string s(static_cast<size_t>(n) + 1, '\0');
  int got = GetWindowTextA(hwnd, s.data(), n + 1);
  s.resize(static_cast<size_t>(got > 0 ? got : 0));
  return s;
}

void SetText(HWND hwnd, const std::string& text) { SetWindowTextA(hwnd, text.c_str()); }

std::string ModulePath() {
  char buf[MAX_PATH];
  DWORD n = GetModuleFileNameA(nullptr, buf, MAX_PATH);
  return std::string(buf, n);
}

void DoEvents() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      break;
    }
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

static int LogPixels(int index) {
  HDC dc = GetDC(nullptr);
  int dpi = GetDeviceCaps(dc, index);
  ReleaseDC(nullptr, dc);
  return dpi > 0 ? dpi : 96;
}

int TwipsPerPixelX() { return 1440 / LogPixels(LOGPIXELSX); }
int TwipsPerPixelY() { return 1440 / LogPixels(LOGPIXELSY); }

}  // namespace ui
