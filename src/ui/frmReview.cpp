// Review Changes: a list of what Apply would write, one row a change, with the value there now and the
// value Apply would leave, side by side. It writes nothing; Close, Escape and the close box end it.
#include <windows.h>
#include <commctrl.h>

#include "ids_review.h"
#include "ui/seam.h"
#include "ui/win.h"

namespace ui {
namespace {

struct Review {
  const std::string& heading;
  const std::vector<ReviewRow>& rows;
};

void Fill(HWND dialog, const Review& review) {
  SetText(GetDlgItem(dialog, IDC_RV_LABEL), review.heading);
  HWND list = GetDlgItem(dialog, IDC_RV_LIST);
  ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
  RECT r;
  GetClientRect(list, &r);
  const int w = r.right - GetSystemMetrics(SM_CXVSCROLL);
  const struct { const char* title; int width; } columns[] = {
      {"Change", w * 22 / 100}, {"Where", w * 38 / 100}, {"Now", w * 20 / 100}, {"After Apply", w * 20 / 100}};
  for (int i = 0; i < 4; ++i) {
    LVCOLUMNA c{};
    c.mask = LVCF_TEXT | LVCF_WIDTH;
    c.pszText = const_cast<char*>(columns[i].title);
    c.cx = columns[i].width;
    SendMessageA(list, LVM_INSERTCOLUMNA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&c));
  }
  int index = 0;
  for (const ReviewRow& row : review.rows) {
    const std::string* cells[] = {&row.change, &row.where, &row.now, &row.after};
    LVITEMA item{};
    item.mask = LVIF_TEXT;
    item.iItem = index;
    item.pszText = const_cast<char*>(cells[0]->c_str());
    SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    for (int sub = 1; sub < 4; ++sub) {
      item.iSubItem = sub;
      item.pszText = const_cast<char*>(cells[sub]->c_str());
      SendMessageA(list, LVM_SETITEMTEXTA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    }
    ++index;
  }
  if (index > 0) ListView_SetItemState(list, 0, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
}

INT_PTR CALLBACK ReviewProc(HWND dialog, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  INT_PTR handled = FALSE;
  Guarded([&] {
    if (msg == WM_INITDIALOG) {
      Fill(dialog, *reinterpret_cast<const Review*>(lp));
      SetFocus(GetDlgItem(dialog, IDC_RV_LIST));
    } else if (msg == WM_COMMAND && (LOWORD(wp) == IDCANCEL || LOWORD(wp) == IDOK)) {
      EndDialog(dialog, IDCANCEL);
      handled = TRUE;
    }
  });
  return handled;
}

}  // namespace

void RealSeam::ShowReview(HWND owner, const std::string& heading, const std::vector<ReviewRow>& rows) {
  Review review{heading, rows};
  DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_REVIEW), owner, ReviewProc,
                  reinterpret_cast<LPARAM>(&review));
}

}  // namespace ui
