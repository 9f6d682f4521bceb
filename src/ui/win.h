#pragma once
// Small RAII pieces over the Windows API: one move-only handle template, paint and select-object
// scopes, a wait-cursor scope and a window base class whose procedure never lets an exception out.
#include <windows.h>
#include <commctrl.h>

#include <string>
#include <utility>

namespace ui {

template <typename T, typename Traits>
class Handle {
 public:
  Handle() = default;
  explicit Handle(T h) : h_(h) {}
  ~Handle() { reset(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle(Handle&& o) noexcept : h_(std::exchange(o.h_, T{})) {}
  Handle& operator=(Handle&& o) noexcept {
    if (this != &o) {
      reset();
      h_ = std::exchange(o.h_, T{});
    }
    return *this;
  }
  T get() const { return h_; }
  explicit operator bool() const { return h_ != T{}; }
  T release() { return std::exchange(h_, T{}); }
  void reset(T h = T{}) {
    if (h_ != T{}) Traits::Close(h_);
    h_ = h;
  }

 private:
  T h_{};
};

struct IconTraits { static void Close(HICON h) { DestroyIcon(h); } };
struct CursorTraits { static void Close(HCURSOR h) { DestroyCursor(h); } };
struct GdiTraits { static void Close(HGDIOBJ h) { DeleteObject(h); } };
struct MemDcTraits { static void Close(HDC h) { DeleteDC(h); } };
struct ImageListTraits { static void Close(HIMAGELIST h); };

struct FontTraits { static void Close(HFONT h) { DeleteObject(h); } };
struct BrushTraits { static void Close(HBRUSH h) { DeleteObject(h); } };
struct BitmapTraits { static void Close(HBITMAP h) { DeleteObject(h); } };

using IconHandle = Handle<HICON, IconTraits>;
using CursorHandle = Handle<HCURSOR, CursorTraits>;
using FontHandle = Handle<HFONT, FontTraits>;
using BrushHandle = Handle<HBRUSH, BrushTraits>;
using BitmapHandle = Handle<HBITMAP, BitmapTraits>;
using ImageListHandle = Handle<HIMAGELIST, ImageListTraits>;
using MemDc = Handle<HDC, MemDcTraits>;

// GetDC/ReleaseDC pair.
class WindowDc {
 public:
  explicit WindowDc(HWND hwnd) : hwnd_(hwnd), dc_(GetDC(hwnd)) {}
  ~WindowDc() { if (dc_) ReleaseDC(hwnd_, dc_); }
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  HDC get() const { return dc_; }

 private:
  HWND hwnd_;
  HDC dc_;
};

// BeginPaint/EndPaint pair.
class PaintScope {
 public:
  explicit PaintScope(HWND hwnd) : hwnd_(hwnd) { BeginPaint(hwnd_, &ps_); }
  ~PaintScope() { EndPaint(hwnd_, &ps_); }
  PaintScope(const PaintScope&) = delete;
  PaintScope& operator=(const PaintScope&) = delete;
  HDC dc() const { return ps_.hdc; }
  const RECT& rect() const { return ps_.rcPaint; }

 private:
  HWND hwnd_;
  PAINTSTRUCT ps_{};
};

// SelectObject with the previous object put back at the end of the scope.
class SelectScope {
 public:
  SelectScope(HDC dc, HGDIOBJ obj) : dc_(dc), old_(SelectObject(dc, obj)) {}
  ~SelectScope() { SelectObject(dc_, old_); }
  SelectScope(const SelectScope&) = delete;
  SelectScope& operator=(const SelectScope&) = delete;

 private:
  HDC dc_;
  HGDIOBJ old_;
};

// A window's picture kept in memory (a memory DC holding a bitmap), so that what was drawn piece by
// piece long ago survives being covered: WM_PAINT and WM_PRINTCLIENT copy it out.
class BackBuffer {
 public:
  BackBuffer(const BackBuffer&) = delete;
  BackBuffer& operator=(const BackBuffer&) = delete;
  BackBuffer() = default;
  ~BackBuffer();

  // Gives the picture the size w x h. New pixels are window-coloured; with keep, what was drawn stays
  // where it was, otherwise the whole picture is window-coloured. A size of zero leaves no picture.
  void Resize(int w, int h, bool keep);
  void Clear();
  HDC dc() const { return bitmap_ ? dc_.get() : nullptr; }
  explicit operator bool() const { return static_cast<bool>(bitmap_); }
  int width() const { return width_; }
  int height() const { return height_; }
  COLORREF Pixel(int x, int y) const { return bitmap_ ? GetPixel(dc_.get(), x, y) : CLR_INVALID; }

  // Copies the rectangle r of the picture to the same place of dc (window-colour where there is none).
  void Blit(HDC dc, const RECT& r) const;
  // Answers WM_PAINT and WM_PRINTCLIENT of the window the picture belongs to.
  LRESULT Paint(HWND hwnd, UINT msg, WPARAM wp) const;

 private:
  void Release();  // puts the DC's first bitmap back

  MemDc dc_;
  BitmapHandle bitmap_;
  HGDIOBJ old_ = nullptr;
  int width_ = 0, height_ = 0;
};

// The window's mouse pointer during lengthy work: 11 is the hourglass, 13 the arrow with hourglass,
// 0 the default. Set(0) or the end of the scope puts the default back.
class MousePointer {
 public:
  static constexpr int kDefault = 0, kHourglass = 11, kArrowHourglass = 13;
  explicit MousePointer(int code = kHourglass) { Set(code); }
  ~MousePointer() { Set(kDefault); }
  MousePointer(const MousePointer&) = delete;
  MousePointer& operator=(const MousePointer&) = delete;
  static void Set(int code);
  static int Current();
};

// Base class of every window of the program. Create() stores `this` at WM_NCCREATE; the procedure
// is noexcept and catches everything, as no exception may unwind through user32.
class Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HWND hwnd() const { return hwnd_; }
  // Registers the class on first use (with the given style and background) and creates the window.
  bool Create(const char* className, DWORD exStyle, DWORD style, const char* title, int x, int y, int w,
              int h, HWND parent, HMENU menuOrId, UINT classStyle = CS_DBLCLKS,
              HBRUSH background = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), HICON icon = nullptr);
  void Destroy();

 protected:
  virtual LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp);
  LRESULT Default(UINT msg, WPARAM wp, LPARAM lp) { return DefWindowProcA(hwnd_, msg, wp, lp); }

 private:
  static LRESULT CALLBACK Proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) noexcept;
  HWND hwnd_ = nullptr;
};

// Runs f and stops whatever it throws: the start-up path and every window procedure go through this,
// as no exception may unwind through user32 or end the program. False when f threw.
template <typename F>
bool Guarded(F&& f) noexcept {
  try {
    f();
    return true;
  } catch (...) {
    return false;
  }
}

// Registers a window class once (nothing happens when it is already registered).
bool RegisterWindowClass(const char* className, WNDPROC proc, UINT classStyle, HBRUSH background,
                         HICON icon = nullptr);

// Text of a window or control.
std::string GetText(HWND hwnd);
void SetText(HWND hwnd, const std::string& text);

// The program's own executable path (program folder, backslash, executable name).
std::string ModulePath();

// Runs the message loop until nothing is waiting (the "yield to the message loop" of long work).
void DoEvents();

// Pixels and twips (the unit the window position is stored in): 15 twips to a pixel at 96 dpi.
int TwipsPerPixelX();
int TwipsPerPixelY();

}  // namespace ui
