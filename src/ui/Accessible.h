#pragma once
// What an owner-drawn list tells screen readers: an MSAA object for the list (role list) whose items
// (role list item) carry the names the person sees, their places on screen and which one is selected.
// The list answers WM_GETOBJECT with Answer and calls Announce whenever its selection moves.
#include <windows.h>

#include <string>

namespace ui {

// The list as screen readers see it. Items are numbered from 0 here; MSAA's child ids are these plus 1.
class AccessibleItems {
 public:
  virtual ~AccessibleItems() = default;
  virtual int ItemCount() const = 0;
  virtual std::string ItemName(int item) const = 0;
  virtual std::string ItemDescription(int) const { return ""; }
  virtual RECT ItemRect(int item) const = 0;  // in the list window's client coordinates
  virtual int SelectedItem() const = 0;       // -1 for none
  virtual int ItemAt(POINT client) const = 0; // -1 for none
  // The item a step away in one of the four directions, or -1. A plain list runs top to bottom.
  virtual int ItemToward(int item, LONG navDir) const;
};

class AccessibleList {
 public:
  AccessibleList(HWND hwnd, const AccessibleItems& items) : hwnd_(hwnd), items_(items) {}
  ~AccessibleList();  // objects a screen reader still holds answer nothing from then on
  AccessibleList(const AccessibleList&) = delete;
  AccessibleList& operator=(const AccessibleList&) = delete;

  // The reply to WM_GETOBJECT: the object for OBJID_CLIENT, else 0 (the system's default answer).
  LRESULT Answer(WPARAM wp, LPARAM lp);
  // Tells screen readers the selection is now on item (focus too while the list has the keyboard).
  void Announce(int item) const;
  // The list took the keyboard: the selected item is what has the focus.
  void AnnounceFocus() const;

 private:
  HWND hwnd_;
  const AccessibleItems& items_;
  class Object;
  Object* object_ = nullptr;
};

}  // namespace ui
