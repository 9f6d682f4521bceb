// The baseline of the start-up benchmark: the smallest Win32 window program, which registers a class,
// shows one window and waits in its message loop.
#include <windows.h>

static LRESULT CALLBACK Proc(HWND h, UINT m, WPARAM w, LPARAM l) {
  if (m == WM_DESTROY) {
    PostQuitMessage(0);
    return 0;
  }
  return DefWindowProcA(h, m, w, l);
}

int WINAPI WinMain(HINSTANCE inst, HINSTANCE, LPSTR, int) {
  WNDCLASSA wc{};
  wc.lpfnWndProc = Proc;
  wc.hInstance = inst;
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = "BareWindow";
  RegisterClassA(&wc);
  HWND h = CreateWindowExA(0, "BareWindow", "Bare", WS_OVERLAPPEDWINDOW, 120, 80, 500, 500, nullptr, nullptr, inst,
                           nullptr);
  ShowWindow(h, SW_SHOW);
  UpdateWindow(h);
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  return 0;
}
