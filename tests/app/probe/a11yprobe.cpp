// Reads a list window through the accessibility API from a process of its own, as a screen reader
// does, and writes what it heard to a text file: "a11yprobe <window handle> <file>".
//   role <role of the list>          count <items>          selection <child id, 0 for none>
//   item <child id> <role> <state> <name>      (one line per item)
#include <windows.h>
#include <ole2.h>
#include <oleacc.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr GUID kIAccessible = {0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

VARIANT Child(LONG id) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_I4;
  v.lVal = id;
  return v;
}

std::string Narrow(BSTR text) {
  if (!text) return "";
  char buffer[1024] = {};
  WideCharToMultiByte(CP_ACP, 0, text, -1, buffer, sizeof buffer - 1, nullptr, nullptr);
  SysFreeString(text);
  return buffer;
}

long I4(IAccessible* acc, HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, VARIANT*), LONG id) {
  VARIANT out;
  VariantInit(&out);
  if (FAILED((acc->*get)(Child(id), &out)) || out.vt != VT_I4) return -1;
  return out.lVal;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  HWND list = reinterpret_cast<HWND>(static_cast<INT_PTR>(std::strtoll(argv[1], nullptr, 10)));
  FILE* out = std::fopen(argv[2], "w");
  if (!out) return 3;
  CoInitialize(nullptr);
  IAccessible* acc = nullptr;
  const HRESULT hr = AccessibleObjectFromWindow(list, static_cast<DWORD>(OBJID_CLIENT), kIAccessible,
                                                reinterpret_cast<void**>(&acc));
  if (FAILED(hr) || !acc) {
    std::fprintf(out, "error %08lx\n", static_cast<unsigned long>(hr));
    std::fclose(out);
    return 1;
  }
  LONG count = -1;
  acc->get_accChildCount(&count);
  std::fprintf(out, "role %ld\ncount %ld\n", I4(acc, &IAccessible::get_accRole, CHILDID_SELF),
               static_cast<long>(count));
  VARIANT selection;
  VariantInit(&selection);
  acc->get_accSelection(&selection);
  std::fprintf(out, "selection %ld\n", selection.vt == VT_I4 ? static_cast<long>(selection.lVal) : 0L);
  for (LONG id = 1; id <= count; ++id) {
    BSTR name = nullptr;
    acc->get_accName(Child(id), &name);
    std::fprintf(out, "item %ld %ld %ld %s\n", static_cast<long>(id), I4(acc, &IAccessible::get_accRole, id),
                 I4(acc, &IAccessible::get_accState, id), Narrow(name).c_str());
  }
  acc->Release();
  std::fclose(out);
  CoUninitialize();
  return 0;
}
