#pragma once
// The base of the program's modal dialogs (prompt, icon picker, rename box): one dialog procedure that
// stores `this` at WM_INITDIALOG and never lets an exception unwind through user32, and the placing
// that the dialogs which size themselves share. Each dialog keeps only its own message handling.
#include <windows.h>

namespace ui {

class ModalDialog {
 public:
  ModalDialog() = default;
  virtual ~ModalDialog() = default;
  ModalDialog(const ModalDialog&) = delete;
  ModalDialog& operator=(const ModalDialog&) = delete;

  // The dialog's window while it is open, else null.
  HWND hwnd() const { return hwnd_; }

 protected:
  // Shows the dialog template modally: the value given to EndDialog, or -1 when none could be made.
  INT_PTR RunModal(int templateId, HWND owner);
  // One message of the dialog, as a dialog procedure answers it (FALSE: the dialog manager's default).
  // A message that throws is answered FALSE.
  virtual INT_PTR HandleMessage(UINT msg, WPARAM wp, LPARAM lp) = 0;

  HWND Item(int id) const { return GetDlgItem(hwnd_, id); }
  void MoveFocusTo(HWND control) const;
  // Gives the dialog a client area of w x h and centres it on `around` when that window is on screen,
  // otherwise on the work area; either way it is kept on the work area.
  void SizeAndCentre(int clientW, int clientH, HWND around) const;

 private:
  static INT_PTR CALLBACK Proc(HWND dlg, UINT msg, WPARAM wp, LPARAM lp) noexcept;
  HWND hwnd_ = nullptr;
};

}  // namespace ui
