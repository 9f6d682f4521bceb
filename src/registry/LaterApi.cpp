#include "registry/LaterApi.h"

#include <vector>

namespace later {
namespace {

// A function of a DLL the process has loaded (or loads now), or null. A cast through void(*)() is the
// one a function pointer of another type may take without a warning.
template <typename F>
F Find(const char* dll, const char* name, bool load = false) {
  HMODULE module = GetModuleHandleA(dll);
  if (!module && load) module = LoadLibraryA(dll);
  if (!module) return nullptr;
  return reinterpret_cast<F>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

std::string WithoutTrailingSlash(std::string s) {
  while (!s.empty() && s.back() == '\\') s.pop_back();
  return s;
}

std::string ShellFoldersAppData() {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", 0,
                    KEY_READ, &key) != ERROR_SUCCESS)
    return "";
  char path[MAX_PATH] = {};
  DWORD size = sizeof path - 1, type = 0;
  const bool ok = RegQueryValueExA(key, "AppData", nullptr, &type, reinterpret_cast<BYTE*>(path), &size) ==
                      ERROR_SUCCESS &&
                  type == REG_SZ;
  RegCloseKey(key);
  return ok ? std::string(path) : "";
}

}  // namespace

bool IsWow64() {
  static const bool wow64 = [] {
    using Fn = BOOL(WINAPI*)(HANDLE, PBOOL);
    auto isWow64Process = Find<Fn>("kernel32.dll", "IsWow64Process");
    BOOL result = FALSE;
    return isWow64Process && isWow64Process(GetCurrentProcess(), &result) && result;
  }();
  return wow64;
}

REGSAM RegistryView() { return IsWow64() ? KEY_WOW64_64KEY : 0; }

LONG DeleteRegistryKey(HKEY parent, const char* subkey) {
  if (IsWow64()) {
    using Fn = LONG(WINAPI*)(HKEY, LPCSTR, REGSAM, DWORD);
    static const auto deleteKeyEx = Find<Fn>("advapi32.dll", "RegDeleteKeyExA");
    if (deleteKeyEx) return deleteKeyEx(parent, subkey, KEY_WOW64_64KEY, 0);
  }
  return RegDeleteKeyA(parent, subkey);
}

std::string AppDataFolder(bool create) {
  constexpr int kAppData = 0x001a, kCreate = 0x8000;  // CSIDL_APPDATA, CSIDL_FLAG_CREATE
  using Fn = HRESULT(WINAPI*)(HWND, int, HANDLE, DWORD, LPSTR);
  static const auto getFolderPath = [] {
    auto f = Find<Fn>("shell32.dll", "SHGetFolderPathA", true);
    return f ? f : Find<Fn>("shfolder.dll", "SHGetFolderPathA", true);
  }();
  char path[MAX_PATH] = {};
  if (getFolderPath && SUCCEEDED(getFolderPath(nullptr, kAppData | (create ? kCreate : 0), nullptr, 0, path)))
    return WithoutTrailingSlash(path);
  std::string folder = WithoutTrailingSlash(ShellFoldersAppData());
  if (folder.empty()) {
    UINT n = GetWindowsDirectoryA(path, MAX_PATH);
    if (n == 0 || n >= MAX_PATH) return "";
    folder = WithoutTrailingSlash(std::string(path, n)) + "\\Application Data";
  }
  if (create) CreateDirectoryA(folder.c_str(), nullptr);
  return folder;
}

std::string SystemFolderPath(const std::string& path) {
  if (!IsWow64()) return path;
  using Fn = UINT(WINAPI*)(LPSTR, UINT);
  static const std::string wow64Folder = [] {
    auto get = Find<Fn>("kernel32.dll", "GetSystemWow64DirectoryA");
    char folder[MAX_PATH] = {};
    const UINT n = get ? get(folder, MAX_PATH) : 0;
    return n > 0 && n < MAX_PATH ? WithoutTrailingSlash(std::string(folder, n)) : std::string();
  }();
  static const std::string systemFolder = [] {
    char folder[MAX_PATH] = {};
    const UINT n = GetSystemDirectoryA(folder, MAX_PATH);
    return n > 0 && n < MAX_PATH ? WithoutTrailingSlash(std::string(folder, n)) : std::string();
  }();
  const size_t n = wow64Folder.size();
  if (n == 0 || systemFolder.empty() || path.size() <= n || path[n] != '\\' ||
      CompareStringA(LOCALE_SYSTEM_DEFAULT, NORM_IGNORECASE, path.data(), static_cast<int>(n), wow64Folder.data(),
                     static_cast<int>(n)) != CSTR_EQUAL)
    return path;
  return systemFolder + path.substr(n);
}

bool FileSize(HANDLE file, uint64_t& size) {
  using Fn = BOOL(WINAPI*)(HANDLE, PLARGE_INTEGER);
  static const auto getFileSizeEx = Find<Fn>("kernel32.dll", "GetFileSizeEx");
  if (getFileSizeEx) {
    LARGE_INTEGER li{};
    if (!getFileSizeEx(file, &li) || li.QuadPart < 0) return false;
    size = static_cast<uint64_t>(li.QuadPart);
    return true;
  }
  DWORD high = 0;
  const DWORD low = GetFileSize(file, &high);
  if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) return false;
  size = (static_cast<uint64_t>(high) << 32) | low;
  return true;
}

void EnableShutdownPrivilege() {
  using Open = BOOL(WINAPI*)(HANDLE, DWORD, PHANDLE);
  using Lookup = BOOL(WINAPI*)(LPCSTR, LPCSTR, PLUID);
  using Adjust = BOOL(WINAPI*)(HANDLE, BOOL, PTOKEN_PRIVILEGES, DWORD, PTOKEN_PRIVILEGES, PDWORD);
  auto open = Find<Open>("advapi32.dll", "OpenProcessToken", true);
  auto lookup = Find<Lookup>("advapi32.dll", "LookupPrivilegeValueA", true);
  auto adjust = Find<Adjust>("advapi32.dll", "AdjustTokenPrivileges", true);
  if (!open || !lookup || !adjust) return;
  HANDLE token = nullptr;
  if (!open(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token)) return;
  TOKEN_PRIVILEGES tp{};
  tp.PrivilegeCount = 1;
  tp.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (lookup("", "SeShutdownPrivilege", &tp.Privileges[0].Luid)) {
    char previous[16];
    DWORD needed = 0;
    adjust(token, FALSE, &tp, sizeof previous, reinterpret_cast<PTOKEN_PRIVILEGES>(previous), &needed);
  }
  CloseHandle(token);
}

// --- window subclassing ------------------------------------------------------------------------------

namespace own {
namespace {

constexpr const char* kChainProperty = "Vexillor.SubclassChain";

struct Link {
  SubclassProc proc;
  UINT_PTR id;
  DWORD_PTR data;
  bool removed;
};

// The last link runs first; each DefSubclassProc passes on to the one below, the last to the original.
struct Chain {
  WNDPROC original = nullptr;
  std::vector<Link> links;
  int running = -1;  // the link handling the innermost message now
  int calls = 0;     // messages in progress (a link may send the window more)
};

Chain* ChainOf(HWND hwnd) { return static_cast<Chain*>(GetPropA(hwnd, kChainProperty)); }

LRESULT CALLBACK ChainProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);

LRESULT CallFrom(Chain* chain, HWND hwnd, int from, UINT msg, WPARAM wp, LPARAM lp) {
  for (int i = from; i >= 0; --i) {
    const Link link = chain->links[static_cast<size_t>(i)];
    if (link.removed) continue;
    const int saved = chain->running;
    chain->running = i;
    const LRESULT result = link.proc(hwnd, msg, wp, lp, link.id, link.data);
    chain->running = saved;
    return result;
  }
  return CallWindowProcA(chain->original, hwnd, msg, wp, lp);
}

// Once no message is in progress: removed links go, and an empty chain gives the window back its own
// procedure (unless someone subclassed it after us, who then still calls ChainProc).
void Tidy(HWND hwnd, Chain* chain) {
  if (chain->calls > 0) return;
  std::erase_if(chain->links, [](const Link& l) { return l.removed; });
  if (!chain->links.empty()) return;
  if (reinterpret_cast<WNDPROC>(GetWindowLongPtrA(hwnd, GWLP_WNDPROC)) != &ChainProc) return;
  SetWindowLongPtrA(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(chain->original));
  RemovePropA(hwnd, kChainProperty);
  delete chain;
}

LRESULT CALLBACK ChainProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
  Chain* chain = ChainOf(hwnd);
  if (!chain) return DefWindowProcA(hwnd, msg, wp, lp);
  ++chain->calls;
  const LRESULT result = CallFrom(chain, hwnd, static_cast<int>(chain->links.size()) - 1, msg, wp, lp);
  --chain->calls;
  if (msg == WM_NCDESTROY) {
    // The window is gone: nothing is called after this, so the chain ends with it.
    for (Link& l : chain->links) l.removed = true;
  }
  Tidy(hwnd, chain);
  return result;
}

}  // namespace

BOOL SetWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id, DWORD_PTR data) {
  if (!IsWindow(hwnd) || !proc) return FALSE;
  Chain* chain = ChainOf(hwnd);
  if (!chain) {
    chain = new Chain;
    if (!SetPropA(hwnd, kChainProperty, chain)) {
      delete chain;
      return FALSE;
    }
    chain->original =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrA(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ChainProc)));
    if (!chain->original) {
      RemovePropA(hwnd, kChainProperty);
      delete chain;
      return FALSE;
    }
  }
  for (Link& l : chain->links)
    if (!l.removed && l.proc == proc && l.id == id) {
      l.data = data;
      return TRUE;
    }
  chain->links.push_back({proc, id, data, false});
  return TRUE;
}

BOOL RemoveWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id) {
  Chain* chain = ChainOf(hwnd);
  if (!chain) return FALSE;
  for (Link& l : chain->links)
    if (!l.removed && l.proc == proc && l.id == id) {
      l.removed = true;
      Tidy(hwnd, chain);
      return TRUE;
    }
  return FALSE;
}

LRESULT DefSubclassProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
  Chain* chain = ChainOf(hwnd);
  if (!chain) return DefWindowProcA(hwnd, msg, wp, lp);
  return CallFrom(chain, hwnd, chain->running - 1, msg, wp, lp);
}

}  // namespace own

namespace {

// comctl32's own family (by name from version 6), all three or none.
struct Comctl {
  decltype(&own::SetWindowSubclass) set = nullptr;
  decltype(&own::RemoveWindowSubclass) remove = nullptr;
  decltype(&own::DefSubclassProc) def = nullptr;
};

const Comctl& Comctl32() {
  static const Comctl found = [] {
    using Set = BOOL(WINAPI*)(HWND, SubclassProc, UINT_PTR, DWORD_PTR);
    using Remove = BOOL(WINAPI*)(HWND, SubclassProc, UINT_PTR);
    using Def = LRESULT(WINAPI*)(HWND, UINT, WPARAM, LPARAM);
    static Set set = Find<Set>("comctl32.dll", "SetWindowSubclass");
    static Remove remove = Find<Remove>("comctl32.dll", "RemoveWindowSubclass");
    static Def def = Find<Def>("comctl32.dll", "DefSubclassProc");
    Comctl c;
    if (set && remove && def) {
      c.set = [](HWND h, SubclassProc p, UINT_PTR i, DWORD_PTR d) { return set(h, p, i, d); };
      c.remove = [](HWND h, SubclassProc p, UINT_PTR i) { return remove(h, p, i); };
      c.def = [](HWND h, UINT m, WPARAM w, LPARAM l) { return def(h, m, w, l); };
    } else {
      c.set = &own::SetWindowSubclass;
      c.remove = &own::RemoveWindowSubclass;
      c.def = &own::DefSubclassProc;
    }
    return c;
  }();
  return found;
}

}  // namespace

BOOL SetWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id, DWORD_PTR data) {
  return Comctl32().set(hwnd, proc, id, data);
}
BOOL RemoveWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id) { return Comctl32().remove(hwnd, proc, id); }
LRESULT DefSubclassProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) { return Comctl32().def(hwnd, msg, wp, lp); }

void NotifyWinEvent(DWORD event, HWND hwnd, LONG objectId, LONG childId) {
  using Fn = void(WINAPI*)(DWORD, HWND, LONG, LONG);
  static const auto notify = Find<Fn>("user32.dll", "NotifyWinEvent");
  if (notify && hwnd) notify(event, hwnd, objectId, childId);
}

LRESULT LresultFromObject(REFIID riid, WPARAM wp, IUnknown* object) {
  using Fn = LRESULT(WINAPI*)(REFIID, WPARAM, IUnknown*);
  using CoInit = HRESULT(WINAPI*)(void*);
  static const auto fromObject = Find<Fn>("oleacc.dll", "LresultFromObject", true);
  if (!fromObject || !object) return 0;
  // Every window of this program lives on one thread; its apartment is started once and never left.
  static bool comStarted = false;
  if (!comStarted) {
    comStarted = true;
    if (auto coInitialize = Find<CoInit>("ole32.dll", "CoInitialize", true)) coInitialize(nullptr);
  }
  const LRESULT result = fromObject(riid, wp, object);
  return result < 0 ? 0 : result;  // a failure code is no answer
}

HRESULT CreateStdAccessibleObject(HWND hwnd, LONG objectId, REFIID riid, void** object) {
  using Fn = HRESULT(WINAPI*)(HWND, LONG, REFIID, void**);
  static const auto create = Find<Fn>("oleacc.dll", "CreateStdAccessibleObject", true);
  if (object) *object = nullptr;
  return create && object ? create(hwnd, objectId, riid, object) : E_NOTIMPL;
}

BSTR AllocBstr(const std::string& text) {
  using Fn = BSTR(WINAPI*)(const OLECHAR*);
  static const auto alloc = Find<Fn>("oleaut32.dll", "SysAllocString", true);
  if (!alloc) return nullptr;
  std::vector<wchar_t> wide(text.size() + 1, L'\0');
  if (!text.empty())
    MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                        static_cast<int>(wide.size()));
  return alloc(wide.data());
}

}  // namespace later
