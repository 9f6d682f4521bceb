#include "ui/ModalDialog.h"

#include <algorithm>

namespace ui {

INT_PTR ModalDialog::RunModal(int templateId, HWND owner) {
  return DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(templateId), owner, &Proc,
                         reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK ModalDialog::Proc(HWND dlg, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  ModalDialog* self = nullptr;
  if (msg == WM_INITDIALOG) {
    self = reinterpret_cast<ModalDialog*>(lp);
    SetWindowLongPtrA(dlg, DWLP_USER, lp);
    self->hwnd_ = dlg;
  } else {
    self = reinterpret_cast<ModalDialog*>(GetWindowLongPtrA(dlg, DWLP_USER));
  }
  // Messages sent before WM_INITDIALOG (WM_SETFONT) and after WM_NCDESTROY have no dialog object.
  if (!self) return FALSE;
  INT_PTR result = FALSE;
  try {
    result = self->HandleMessage(msg, wp, lp);
  } catch (...) {
    result = FALSE;
  }
  if (msg == WM_NCDESTROY) {
    SetWindowLongPtrA(dlg, DWLP_USER, 0);
    self->hwnd_ = nullptr;
  }
  return result;
}

void ModalDialog::MoveFocusTo(HWND control) const {
  SendMessageA(hwnd_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

void ModalDialog::SizeAndCentre(int clientW, int clientH, HWND around) const {
  RECT frame{0, 0, clientW, clientH};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(hwnd_, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrA(hwnd_, GWL_EXSTYLE)));
  const int w = frame.right - frame.left, h = frame.bottom - frame.top;
  RECT work{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  RECT centre = work;
  if (around && IsWindowVisible(around) && !IsIconic(around)) GetWindowRect(around, &centre);
  int x = centre.left + (centre.right - centre.left - w) / 2;
  int y = centre.top + (centre.bottom - centre.top - h) / 2;
  x = std::max<int>(work.left, std::min<int>(x, work.right - w));
  y = std::max<int>(work.top, std::min<int>(y, work.bottom - h));
  SetWindowPos(hwnd_, nullptr, x, y, w, h, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace ui
