#include "ui/frmAbout.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "ids_about.h"
#include "ui/HelpPopup.h"

namespace ui {
namespace {

// One node of a version resource: a length, a value length, a type (1 = text), a UTF-16 key, the
// value and the child nodes, each part starting on a four-byte boundary of the resource.
struct VersionNode {
  std::wstring key;
  const BYTE* value = nullptr;
  size_t valueBytes = 0;
  bool text = false;
  const BYTE* children = nullptr;
  const BYTE* end = nullptr;
};

WORD Word(const BYTE* p) { return static_cast<WORD>(p[0] | (p[1] << 8)); }

const BYTE* Align(const BYTE* base, const BYTE* p) { return base + ((p - base + 3) & ~static_cast<ptrdiff_t>(3)); }

// Reads the node at p, which must end by limit. False for anything that does not fit.
bool ReadNode(const BYTE* base, const BYTE* p, const BYTE* limit, VersionNode& node) {
  if (p >= limit || limit - p < 6) return false;
  const WORD length = Word(p), valueLength = Word(p + 2), type = Word(p + 4);
  if (length < 6 || length > limit - p) return false;
  node = VersionNode{};
  node.end = p + length;
  const BYTE* k = p + 6;
  for (;;) {
    if (node.end - k < 2) return false;
    wchar_t c = static_cast<wchar_t>(Word(k));
    k += 2;
    if (c == 0) break;
    node.key += c;
  }
  node.text = type == 1;
  node.value = Align(base, k);
  if (node.value > node.end) node.value = node.end;
  node.valueBytes = node.text ? static_cast<size_t>(valueLength) * 2 : valueLength;
  if (node.valueBytes > static_cast<size_t>(node.end - node.value)) node.valueBytes = node.end - node.value;
  node.children = Align(base, node.value + node.valueBytes);
  if (node.children > node.end) node.children = node.end;
  return true;
}

// The first child of `parent` whose key is `key` (any child when key is null).
bool FindChild(const BYTE* base, const VersionNode& parent, const wchar_t* key, VersionNode& found) {
  const BYTE* p = parent.children;
  while (p < parent.end) {
    VersionNode child;
    if (!ReadNode(base, p, parent.end, child)) return false;
    if (!key || child.key == key) {
      found = child;
      return true;
    }
    p = Align(base, child.end);
  }
  return false;
}

std::string Narrow(const std::wstring& w) {
  if (w.empty()) return {};
  int n = WideCharToMultiByte(CP_ACP, 0, w.c_str(), static_cast<int>(w.size()), nullptr, 0, nullptr, nullptr);
  std::string s(static_cast<size_t>(n > 0 ? n : 0), '\0');
  if (n > 0) WideCharToMultiByte(CP_ACP, 0, w.c_str(), static_cast<int>(w.size()), s.data(), n, nullptr, nullptr);
  return s;
}

std::wstring Widen(const std::string& s) {
  std::wstring w;
  for (unsigned char c : s) w += static_cast<wchar_t>(c);  // keys are plain ASCII
  return w;
}

// The resource's bytes, or nullptr.
const BYTE* VersionResource(HMODULE module, size_t& size) {
  HRSRC info = FindResourceA(module, MAKEINTRESOURCEA(VS_VERSION_INFO), MAKEINTRESOURCEA(16) /* RT_VERSION */);
  if (!info) return nullptr;
  HGLOBAL loaded = LoadResource(module, info);
  if (!loaded) return nullptr;
  size = SizeofResource(module, info);
  return static_cast<const BYTE*>(LockResource(loaded));
}

}  // namespace

std::string VersionResourceText(const void* data, size_t size, const std::string& name) {
  if (!data || size < 6) return {};
  const BYTE* base = static_cast<const BYTE*>(data);
  VersionNode root, files, table, entry;
  if (!ReadNode(base, base, base + size, root) || root.key != L"VS_VERSION_INFO") return {};
  if (!FindChild(base, root, L"StringFileInfo", files) || !FindChild(base, files, nullptr, table)) return {};
  if (!FindChild(base, table, Widen(name).c_str(), entry) || !entry.text) return {};
  std::wstring value;
  for (size_t i = 0; i + 1 < entry.valueBytes; i += 2) {
    wchar_t c = static_cast<wchar_t>(Word(entry.value + i));
    if (c == 0) break;
    value += c;
  }
  return Narrow(value);
}

std::string ModuleVersion(HMODULE module) {
  if (!module) module = GetModuleHandleA(nullptr);
  size_t size = 0;
  const BYTE* data = VersionResource(module, size);
  if (!data) return {};
  std::string text = VersionResourceText(data, size, "ProductVersion");
  if (!text.empty()) return text;
  // No text: the fixed part, which follows the root's key.
  VersionNode root;
  if (!ReadNode(data, data, data + size, root) || root.valueBytes < sizeof(VS_FIXEDFILEINFO)) return {};
  VS_FIXEDFILEINFO fixed;
  std::memcpy(&fixed, root.value, sizeof fixed);
  if (fixed.dwSignature != 0xFEEF04BD) return {};
  char buf[32];
  std::snprintf(buf, sizeof buf, "%u.%02u", static_cast<unsigned>(HIWORD(fixed.dwProductVersionMS)),
                static_cast<unsigned>(LOWORD(fixed.dwProductVersionMS)));
  return buf;
}

std::string MailShown(const std::string& mail) {
  return mail.compare(0, 7, "mailto:") == 0 ? mail.substr(7) : mail;
}

void frmAbout::Show(HWND owner) {
  DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_ABOUT), owner, &DialogProc,
                  reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK frmAbout::DialogProc(HWND h, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  try {
    frmAbout* self = nullptr;
    if (msg == WM_INITDIALOG) {
      self = reinterpret_cast<frmAbout*>(lp);
      SetWindowLongPtrA(h, DWLP_USER, lp);
      self->hwnd_ = h;
    } else {
      self = reinterpret_cast<frmAbout*>(GetWindowLongPtrA(h, DWLP_USER));
    }
    return self ? self->Handle(msg, wp, lp) : FALSE;
  } catch (...) {
    return FALSE;
  }
}

INT_PTR frmAbout::Handle(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_INITDIALOG:
      Form_Load();
      return TRUE;  // the focus goes to OK
    case WM_COMMAND: {
      const int id = LOWORD(wp);
      if (id == IDOK || id == IDCANCEL) EndDialog(hwnd_, id);  // OK, Enter, Escape and the close box
      if ((id == IDC_ABOUT_HOME || id == IDC_ABOUT_MAIL) && HIWORD(wp) == STN_CLICKED) lblLink_Click(id);
      return TRUE;
    }
    case WM_CTLCOLORSTATIC:
      if (IsLink(reinterpret_cast<HWND>(lp))) {
        HDC dc = reinterpret_cast<HDC>(wp);
        SetTextColor(dc, kLinkColour);
        SetBkMode(dc, TRANSPARENT);
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_BTNFACE));
      }
      return FALSE;
    case WM_SETCURSOR:
      if (IsLink(reinterpret_cast<HWND>(wp))) {
        HCURSOR hand = LoadCursorA(nullptr, IDC_HAND);
        SetCursor(hand ? hand : LoadCursorA(nullptr, IDC_ARROW));
        SetWindowLongPtrA(hwnd_, DWLP_MSGRESULT, TRUE);
        return TRUE;
      }
      return FALSE;
    case WM_DESTROY:
      hwnd_ = nullptr;
      return FALSE;
  }
  return FALSE;
}

void frmAbout::Form_Load() {
  const std::string version = ModuleVersion();
  SetText(GetDlgItem(hwnd_, IDC_ABOUT_VERSION), version.empty() ? "" : "Version " + version);
  SetText(GetDlgItem(hwnd_, IDC_ABOUT_HOME), about_.homePage);
  SetText(GetDlgItem(hwnd_, IDC_ABOUT_MAIL), MailShown(about_.mail));

  // The name a size larger and bold, the addresses underlined as links are.
  HFONT font = reinterpret_cast<HFONT>(SendMessageA(hwnd_, WM_GETFONT, 0, 0));
  LOGFONTA lf{};
  if (font && GetObjectA(font, sizeof lf, &lf)) {
    LOGFONTA title = lf;
    title.lfWeight = FW_BOLD;
    title.lfHeight = lf.lfHeight * 3 / 2;
    titleFont_.reset(CreateFontIndirectA(&title));
    LOGFONTA link = lf;
    link.lfUnderline = TRUE;
    linkFont_.reset(CreateFontIndirectA(&link));
    SendMessageA(GetDlgItem(hwnd_, IDC_ABOUT_NAME), WM_SETFONT, reinterpret_cast<WPARAM>(titleFont_.get()), FALSE);
    for (int id : {IDC_ABOUT_HOME, IDC_ABOUT_MAIL}) {
      HWND link = GetDlgItem(hwnd_, id);
      SendMessageA(link, WM_SETFONT, reinterpret_cast<WPARAM>(linkFont_.get()), FALSE);
      // Only the address itself is the link (and underlined), not the empty rest of its line.
      RECT r{}, text{0, 0, 0, 0};
      GetWindowRect(link, &r);
      MapWindowPoints(nullptr, hwnd_, reinterpret_cast<POINT*>(&r), 2);
      WindowDc dc(link);
      SelectScope use(dc.get(), linkFont_.get());
      const std::string address = GetText(link);
      DrawTextA(dc.get(), address.c_str(), -1, &text, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
      const int width = std::min<int>(r.right - r.left, text.right + 2);
      SetWindowPos(link, nullptr, 0, 0, width, r.bottom - r.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
  }
}

bool frmAbout::IsLink(HWND control) const {
  const int id = control ? GetDlgCtrlID(control) : 0;
  return id == IDC_ABOUT_HOME || id == IDC_ABOUT_MAIL;
}

void frmAbout::lblLink_Click(int id) {
  GetSeam().ShellOpen(hwnd_, id == IDC_ABOUT_HOME ? about_.homePage : about_.mail);
}

void RealSeam::ShowAbout(HWND owner, const AboutRequest& about) {
  frmAbout form(about);
  form.Show(owner);
}

}  // namespace ui
