#include "ui/frmRename.h"

#include "ids_picker.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"
#include "ui/win.h"

namespace ui {

std::optional<std::string> frmRename::Show(HWND owner) {
  result_.reset();
  RunModal(IDD_RENAME, owner);
  return result_;
}

INT_PTR frmRename::HandleMessage(UINT msg, WPARAM wp, LPARAM) {
  switch (msg) {
    case WM_INITDIALOG:
      Form_Load();
      return TRUE;  // the dialog manager focuses the text box and selects its text
    case WM_COMMAND:
      if (LOWORD(wp) == IDOK) cmdOK_Click();          // OK and Enter
      if (LOWORD(wp) == IDCANCEL) cmdCancel_Click();  // Cancel, Escape and the close box
      return TRUE;
    case WM_DESTROY:
      textbox_ = nullptr;
      return FALSE;
  }
  return FALSE;
}

void frmRename::Form_Load() {
  textbox_ = Item(IDC_RN_TEXT);
  SetText(Item(IDC_RN_LABEL), LabelText);
  SetText(textbox_, Text);
}

void frmRename::cmdOK_Click() {
  std::string name = GetText(textbox_);
  if (name.empty()) {
    // The prompt belongs to this box while it is open, not to the main window behind it.
    HWND previous = modMsgbox::Owner();
    modMsgbox::SetOwner(hwnd());
    modMsgbox::EmptyName();
    modMsgbox::SetOwner(previous);
    SetText(textbox_, EmptyReset);
    MoveFocusTo(textbox_);
    SendMessageA(textbox_, EM_SETSEL, 0, -1);
    return;
  }
  result_ = std::move(name);
  EndDialog(hwnd(), IDOK);
}

void frmRename::cmdCancel_Click() {
  result_.reset();
  EndDialog(hwnd(), IDCANCEL);
}

std::optional<std::string> RealSeam::AskName(HWND owner, const std::string& label, const std::string& text,
                                             const std::string& emptyReset) {
  frmRename form;
  form.LabelText = label;
  form.Text = text;
  form.EmptyReset = emptyReset;
  return form.Show(owner);
}

}  // namespace ui
