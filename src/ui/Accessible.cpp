#include "ui/Accessible.h"

#include <ole2.h>
#include <oleacc.h>

#include <new>

#include "registry/LaterApi.h"

namespace ui {

namespace {

// Spelled out: the IID_IAccessible of MinGW's import library is not these bytes.
constexpr GUID kIAccessible = {0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
constexpr GUID kIUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr GUID kIDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

void SetI4(VARIANT* v, LONG value) {
  v->vt = VT_I4;
  v->lVal = value;
}
void SetEmpty(VARIANT* v) { v->vt = VT_EMPTY; }

}  // namespace

int AccessibleItems::ItemToward(int item, LONG navDir) const {
  int next = -1;
  if (navDir == NAVDIR_DOWN || navDir == NAVDIR_NEXT) next = item + 1;
  if (navDir == NAVDIR_UP || navDir == NAVDIR_PREVIOUS) next = item - 1;
  return next >= 0 && next < ItemCount() ? next : -1;
}

// The COM object handed to screen readers. It may outlive the list (a reader in another process
// holds it as long as it likes), so the list cuts it loose when it goes.
class AccessibleList::Object final : public IAccessible {
 public:
  Object(HWND hwnd, const AccessibleItems* items) : hwnd_(hwnd), items_(items) {}
  void Detach() { items_ = nullptr; }

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (!out) return E_POINTER;
    if (IsEqualGUID(riid, kIUnknown) || IsEqualGUID(riid, kIDispatch) || IsEqualGUID(riid, kIAccessible)) {
      *out = static_cast<IAccessible*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&refs_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  // IDispatch: readers use the IAccessible methods directly.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count) *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }

  // IAccessible
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    if (!parent) return E_POINTER;
    *parent = nullptr;
    if (!Alive()) return RPC_E_DISCONNECTED;
    const HRESULT hr = later::CreateStdAccessibleObject(hwnd_, OBJID_WINDOW, kIDispatch, reinterpret_cast<void**>(parent));
    return SUCCEEDED(hr) && *parent ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    if (!Alive()) return RPC_E_DISCONNECTED;
    *count = items_->ItemCount();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** out) override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (!Alive()) return RPC_E_DISCONNECTED;
    return Item(child) >= 0 ? S_FALSE : E_INVALIDARG;  // items are simple elements, not objects
  }
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    if (!name) return E_POINTER;
    *name = nullptr;
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = Item(child);
    if (item == kBad) return E_INVALIDARG;
    if (item == kSelf) {
      char text[256] = {};
      GetWindowTextA(hwnd_, text, sizeof text);
      return Text(text, name);
    }
    return Text(items_->ItemName(item), name);
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
    if (!value) return E_POINTER;
    *value = nullptr;
    if (!Alive()) return RPC_E_DISCONNECTED;
    return Item(child) == kBad ? E_INVALIDARG : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override {
    if (!text) return E_POINTER;
    *text = nullptr;
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = Item(child);
    if (item == kBad) return E_INVALIDARG;
    return item == kSelf ? S_FALSE : Text(items_->ItemDescription(item), text);
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    if (!role) return E_POINTER;
    SetEmpty(role);
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = Item(child);
    if (item == kBad) return E_INVALIDARG;
    SetI4(role, item == kSelf ? ROLE_SYSTEM_LIST : ROLE_SYSTEM_LISTITEM);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    if (!state) return E_POINTER;
    SetEmpty(state);
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = Item(child);
    if (item == kBad) return E_INVALIDARG;
    const bool focused = GetFocus() == hwnd_;
    LONG s = STATE_SYSTEM_FOCUSABLE;
    if (!IsWindowVisible(hwnd_)) s |= STATE_SYSTEM_INVISIBLE;
    if (item == kSelf) {
      if (focused) s |= STATE_SYSTEM_FOCUSED;
    } else {
      s |= STATE_SYSTEM_SELECTABLE;
      if (item == items_->SelectedItem()) s |= STATE_SYSTEM_SELECTED | (focused ? STATE_SYSTEM_FOCUSED : 0);
    }
    SetI4(state, s);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* help) override {
    if (help) *help = nullptr;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) override {
    if (file) *file = nullptr;
    if (topic) *topic = 0;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* keys) override {
    if (keys) *keys = nullptr;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
    if (!focus) return E_POINTER;
    SetEmpty(focus);
    if (!Alive()) return RPC_E_DISCONNECTED;
    if (GetFocus() != hwnd_) return S_FALSE;
    SetI4(focus, items_->SelectedItem() + 1);  // CHILDID_SELF (0) when nothing is selected
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selection) override {
    if (!selection) return E_POINTER;
    SetEmpty(selection);
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = items_->SelectedItem();
    if (item < 0 || item >= items_->ItemCount()) return S_FALSE;
    SetI4(selection, item + 1);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR* action) override {
    if (action) *action = nullptr;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override {
    if (!left || !top || !width || !height) return E_POINTER;
    *left = *top = *width = *height = 0;
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = Item(child);
    if (item == kBad) return E_INVALIDARG;
    RECT r{};
    if (item == kSelf) GetClientRect(hwnd_, &r);
    else r = items_->ItemRect(item);
    MapWindowPoints(hwnd_, nullptr, reinterpret_cast<POINT*>(&r), 2);
    *left = r.left;
    *top = r.top;
    *width = r.right - r.left;
    *height = r.bottom - r.top;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accNavigate(LONG dir, VARIANT start, VARIANT* end) override {
    if (!end) return E_POINTER;
    SetEmpty(end);
    if (!Alive()) return RPC_E_DISCONNECTED;
    const int item = Item(start);
    if (item == kBad) return E_INVALIDARG;
    const int count = items_->ItemCount();
    int to = -1;
    if (item == kSelf) {
      if (dir == NAVDIR_FIRSTCHILD && count > 0) to = 0;
      else if (dir == NAVDIR_LASTCHILD && count > 0) to = count - 1;
      else if (dir != NAVDIR_FIRSTCHILD && dir != NAVDIR_LASTCHILD) return S_FALSE;  // siblings: the window's
    } else if (dir != NAVDIR_FIRSTCHILD && dir != NAVDIR_LASTCHILD) {
      to = items_->ItemToward(item, dir);
    }
    if (to < 0) return S_FALSE;
    SetI4(end, to + 1);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* hit) override {
    if (!hit) return E_POINTER;
    SetEmpty(hit);
    if (!Alive()) return RPC_E_DISCONNECTED;
    POINT p{x, y};
    ScreenToClient(hwnd_, &p);
    RECT client{};
    GetClientRect(hwnd_, &client);
    if (!PtInRect(&client, p)) return S_FALSE;
    const int item = items_->ItemAt(p);
    SetI4(hit, item >= 0 && item < items_->ItemCount() ? item + 1 : CHILDID_SELF);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

 private:
  static constexpr int kSelf = -1, kBad = -2;

  ~Object() = default;
  bool Alive() const { return items_ && IsWindow(hwnd_); }

  // The item a child id names: kSelf for the list, kBad for anything else.
  int Item(const VARIANT& child) const {
    if (child.vt != VT_I4) return kBad;
    if (child.lVal == CHILDID_SELF) return kSelf;
    return child.lVal >= 1 && child.lVal <= items_->ItemCount() ? static_cast<int>(child.lVal - 1) : kBad;
  }

  static HRESULT Text(const std::string& text, BSTR* out) {
    if (text.empty()) return S_FALSE;
    *out = later::AllocBstr(text);
    return *out ? S_OK : E_OUTOFMEMORY;
  }

  LONG refs_ = 1;  // the list's own reference
  HWND hwnd_;
  const AccessibleItems* items_;
};

AccessibleList::~AccessibleList() {
  if (!object_) return;
  object_->Detach();
  object_->Release();
}

LRESULT AccessibleList::Answer(WPARAM wp, LPARAM lp) {
  if (static_cast<LONG>(lp) != OBJID_CLIENT) return 0;
  if (!object_) object_ = new (std::nothrow) Object(hwnd_, &items_);
  return object_ ? later::LresultFromObject(kIAccessible, wp, object_) : 0;
}

void AccessibleList::Announce(int item) const {
  if (item < 0) return;
  if (GetFocus() == hwnd_) later::NotifyWinEvent(EVENT_OBJECT_FOCUS, hwnd_, OBJID_CLIENT, item + 1);
  later::NotifyWinEvent(EVENT_OBJECT_SELECTION, hwnd_, OBJID_CLIENT, item + 1);
}

void AccessibleList::AnnounceFocus() const {
  const int item = items_.SelectedItem();
  later::NotifyWinEvent(EVENT_OBJECT_FOCUS, hwnd_, OBJID_CLIENT, item >= 0 ? item + 1 : CHILDID_SELF);
}

}  // namespace ui
