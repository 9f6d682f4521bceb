#pragma once
// frmRename: the small modal "Rename" box. A label says what is renamed, a text box holds the name.
// OK refuses an empty name (a prompt, then the reset text comes back into the box); Enter is OK,
// Escape and the close box are Cancel.
#include <windows.h>

#include <optional>
#include <string>

#include "ui/ModalDialog.h"

namespace ui {

class frmRename : public ModalDialog {
 public:
  std::string LabelText;   // "Type a new name for " and the item, from the caller
  std::string Text;        // the text box's first content
  std::string EmptyReset;  // put back into the box when OK finds it empty

  // Shows the box modally; the accepted name, or nothing when cancelled.
  std::optional<std::string> Show(HWND owner = nullptr);

 private:
  INT_PTR HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;
  void Form_Load();
  void cmdOK_Click();
  void cmdCancel_Click();

  HWND textbox_ = nullptr;
  std::optional<std::string> result_;
};

}  // namespace ui
