#pragma once
// Shared scaffolding for the UI tests: a host window, paths, and a driver for real modal dialogs.
#include <windows.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ui/win.h"

namespace vxtest {

struct HostWindow : ui::Window {
  explicit HostWindow(int width = 480, int height = 480) {
    Create("VxUiTestHost", 0, WS_OVERLAPPEDWINDOW | WS_VISIBLE, "UI test", 40, 40, width, height, nullptr, nullptr);
  }
};

inline std::string Shell32() {
  char dir[MAX_PATH];
  return std::string(dir, GetSystemDirectoryA(dir, MAX_PATH)) + "\\shell32.dll";
}

// The 32 x 32 pixels of an icon as DrawIcon draws it over a background.
inline std::vector<COLORREF> Render(HICON icon, COLORREF background = RGB(255, 255, 255)) {
  ui::WindowDc screen(nullptr);
  ui::MemDc dc(CreateCompatibleDC(screen.get()));
  ui::BitmapHandle bitmap(CreateCompatibleBitmap(screen.get(), 32, 32));
  ui::SelectScope keep(dc.get(), bitmap.get());
  ui::BrushHandle brush(CreateSolidBrush(background));
  RECT all{0, 0, 32, 32};
  FillRect(dc.get(), &all, brush.get());
  DrawIcon(dc.get(), 0, 0, icon);
  std::vector<COLORREF> pixels;
  for (int i = 0; i < 32 * 32; ++i) pixels.push_back(GetPixel(dc.get(), i % 32, i / 32));
  return pixels;
}

// A folder of this process's own under %TEMP% (test runs may overlap).
inline std::string TempFolder(const char* name) {
  char buf[MAX_PATH];
  const std::string path = std::string(buf, GetTempPathA(MAX_PATH, buf)) + name + std::to_string(GetCurrentProcessId());
  CreateDirectoryA(path.c_str(), nullptr);
  return path;
}

// A key typed into the window that has the focus.
inline void PostKey(UINT vk) {
  PostMessageA(GetFocus(), WM_KEYDOWN, vk, 1);
  PostMessageA(GetFocus(), WM_KEYUP, vk, 0xC0000001);
}

inline void Click(HWND button) { SendMessageA(button, BM_CLICK, 0, 0); }

// A dialog script: each step runs on a thread-timer tick, so the modal loop has handled what the previous
// step posted; a dialog still open after the last step is closed and reported, so a test cannot hang.
using Step = std::function<void(HWND dialog)>;
struct Script {
  std::string title;
  std::vector<Step> steps;
  size_t next = 0;
  bool leftOpen = false, busy = false;
  static inline Script* current = nullptr;  // the timer callback has no context argument
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    Script* s = current;  // only a visible dialog of this thread counts: test runs may overlap
    HWND dialog = s && !s->busy ? FindWindowA("#32770", s->title.c_str()) : nullptr;
    if (!dialog || !IsWindowVisible(dialog) || GetWindowThreadProcessId(dialog, nullptr) != GetCurrentThreadId())
      return;
    s->busy = true;
    if (s->next < s->steps.size()) s->steps[s->next++](dialog);
    else s->leftOpen = true, EndDialog(dialog, IDCANCEL);
    s->busy = false;
  }
};

// Calls show(), which opens the dialog of that title, and runs every step inside it.
template <class Show>
auto RunModal(const std::string& title, std::vector<Step> steps, Show show) {
  Script script{title, std::move(steps)};
  Script::current = &script;
  UINT_PTR timer = SetTimer(nullptr, 0, 40, &Script::Tick);
  auto result = show();
  KillTimer(nullptr, timer);
  Script::current = nullptr;
  EXPECT_EQ(script.next, script.steps.size()) << "the dialog closed before every step ran";
  EXPECT_FALSE(script.leftOpen) << "the dialog had to be closed by the test";
  return result;
}

}  // namespace vxtest
