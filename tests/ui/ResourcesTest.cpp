// The program's drawn resources as the shell and the controls see them: the sixteen icons in
// ExtractIconA order, the toolbar and tree strips, the version block and the manifest. Checked on this
// test program (which links the same resources) and on the real vexillor.exe next to it.
#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "resource.h"
#include "ui/win.h"

namespace {

std::string ProgramPath() {
  // build/tests/test_ui.exe -> build/vexillor.exe
  std::string p = ui::ModulePath();
  for (int i = 0; i < 2; ++i) p = p.substr(0, p.find_last_of('\\'));
  return p + "\\vexillor.exe";
}

std::vector<std::string> Executables() { return {ui::ModulePath(), ProgramPath()}; }

// 32 x 32 top-down RGB pixels of an icon drawn with DrawIconEx over a solid background.
using Pixels = std::vector<DWORD>;

Pixels Render(HICON icon, COLORREF background, int size = 32) {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(bi.bmiHeader);
  bi.bmiHeader.biWidth = size;
  bi.bmiHeader.biHeight = -size;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  ui::BitmapHandle dib(CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
  ui::MemDc dc(CreateCompatibleDC(nullptr));
  HGDIOBJ old = SelectObject(dc.get(), dib.get());
  ui::BrushHandle brush(CreateSolidBrush(background));
  RECT r{0, 0, size, size};
  FillRect(dc.get(), &r, brush.get());
  DrawIconEx(dc.get(), 0, 0, icon, size, size, 0, nullptr, DI_NORMAL);
  GdiFlush();
  Pixels out(static_cast<const DWORD*>(bits), static_cast<const DWORD*>(bits) + size * size);
  for (DWORD& p : out) p &= 0xFFFFFF;
  SelectObject(dc.get(), old);
  return out;
}

DWORD Dib(COLORREF c) { return (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c); }

Pixels Extracted(const std::string& exe, int index, COLORREF background) {
  ui::IconHandle icon(ExtractIconA(GetModuleHandleA(nullptr), exe.c_str(), static_cast<UINT>(index)));
  EXPECT_TRUE(icon) << exe << " index " << index;
  return icon ? Render(icon.get(), background) : Pixels{};
}

TEST(Resources, EveryExecutableCarriesSixteenIcons) {
  for (const std::string& exe : Executables()) {
    ASSERT_NE(GetFileAttributesA(exe.c_str()), INVALID_FILE_ATTRIBUTES) << exe;
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(ExtractIconA(GetModuleHandleA(nullptr), exe.c_str(), UINT(-1))), 16u)
        << exe;
    EXPECT_EQ(ExtractIconA(GetModuleHandleA(nullptr), exe.c_str(), 16), nullptr) << exe;
  }
}

// Index 0 must be the program icon and index n pointer n, whatever the resource compiler's ordering.
TEST(Resources, ExtractIconIndexesFollowTheIconIds) {
  HINSTANCE self = GetModuleHandleA(nullptr);
  for (int index = 0; index < 16; ++index) {
    ui::IconHandle byId(static_cast<HICON>(
        LoadImageA(self, MAKEINTRESOURCEA(IDI_PROGRAM + index), IMAGE_ICON, 32, 32, LR_DEFAULTCOLOR)));
    ASSERT_TRUE(byId) << "icon id " << IDI_PROGRAM + index;
    Pixels expected = Render(byId.get(), RGB(255, 255, 255));
    for (const std::string& exe : Executables())
      EXPECT_EQ(Extracted(exe, index, RGB(255, 255, 255)), expected) << exe << " index " << index;
  }
}

TEST(Resources, SixteenDifferentImagesWithTransparentSurroundings) {
  std::set<Pixels> seen;
  for (int index = 0; index < 16; ++index) {
    Pixels onWhite = Extracted(ui::ModulePath(), index, RGB(255, 255, 255));
    Pixels onTeal = Extracted(ui::ModulePath(), index, RGB(0, 128, 128));
    ASSERT_EQ(onWhite.size(), 32u * 32u);
    EXPECT_TRUE(seen.insert(onWhite).second) << "index " << index << " repeats an earlier image";
    // Corners show the background through (alpha and mask agree); the drawing itself covers a fair
    // part of the square, the same over any background.
    for (int corner : {0, 31, 32 * 31, 32 * 32 - 1}) {
      EXPECT_EQ(onWhite[corner], Dib(RGB(255, 255, 255))) << "index " << index;
      EXPECT_EQ(onTeal[corner], Dib(RGB(0, 128, 128))) << "index " << index;
    }
    int drawn = 0, steady = 0;
    for (size_t i = 0; i < onWhite.size(); ++i) {
      if (onTeal[i] != Dib(RGB(0, 128, 128))) ++drawn;
      if (onTeal[i] == onWhite[i]) ++steady;
    }
    EXPECT_GT(drawn, 60) << "index " << index;
    EXPECT_GT(steady, 40) << "index " << index << " has too few opaque pixels";
  }
  // Pointers are black and white; the program icon is in colour.
  Pixels program = Extracted(ui::ModulePath(), 0, RGB(255, 255, 255));
  int coloured = 0;
  for (DWORD p : program) {
    int r = (p >> 16) & 0xFF, g = (p >> 8) & 0xFF, b = p & 0xFF;
    if (abs(r - g) > 60 || abs(g - b) > 60) ++coloured;
  }
  EXPECT_GT(coloured, 100);
}

#pragma pack(push, 2)
struct GroupEntry {
  BYTE width, height, colours, reserved;
  WORD planes, bitCount;
  DWORD bytes;
  WORD id;
};
struct GroupHeader {
  WORD reserved, type, count;
};
#pragma pack(pop)

TEST(Resources, EachIconHasSixteenThirtyTwoAndFortyEightPixelImagesWithAlphaAndMask) {
  HMODULE self = GetModuleHandleA(nullptr);
  for (int id = IDI_PROGRAM; id < IDI_POINTER_FIRST + 15; ++id) {
    HRSRC res = FindResourceA(self, MAKEINTRESOURCEA(id), MAKEINTRESOURCEA(14));  // RT_GROUP_ICON
    ASSERT_TRUE(res) << id;
    auto* header = static_cast<const GroupHeader*>(LockResource(LoadResource(self, res)));
    ASSERT_TRUE(header) << id;
    auto* entries = reinterpret_cast<const GroupEntry*>(header + 1);
    std::set<int> sizes;
    for (int i = 0; i < header->count; ++i) {
      EXPECT_EQ(entries[i].bitCount, 32) << id;
      EXPECT_EQ(entries[i].width, entries[i].height) << id;
      sizes.insert(entries[i].width);
    }
    EXPECT_EQ(sizes, (std::set<int>{16, 32, 48})) << id;

    // Systems that ignore alpha draw through the AND mask: it must be set exactly where alpha is 0.
    int partial = 0;
    for (int i = 0; i < header->count; ++i) {
      HRSRC image = FindResourceA(self, MAKEINTRESOURCEA(entries[i].id), MAKEINTRESOURCEA(3));  // RT_ICON
      ASSERT_TRUE(image) << id;
      auto* info = static_cast<const BITMAPINFOHEADER*>(LockResource(LoadResource(self, image)));
      const int size = entries[i].width;
      ASSERT_EQ(info->biWidth, size);
      ASSERT_EQ(info->biHeight, 2 * size);
      ASSERT_EQ(info->biBitCount, 32);
      const BYTE* xorBits = reinterpret_cast<const BYTE*>(info + 1);
      const BYTE* andBits = xorBits + size * size * 4;
      const int stride = (size + 31) / 32 * 4;
      ASSERT_EQ(SizeofResource(self, image), sizeof(*info) + size * size * 4 + stride * size);
      int clear = 0;
      for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
          BYTE alpha = xorBits[(y * size + x) * 4 + 3];
          bool masked = andBits[y * stride + x / 8] & (0x80 >> (x % 8));
          EXPECT_EQ(masked, alpha == 0) << "icon " << id << " size " << size << " at " << x << "," << y;
          clear += alpha == 0;
          partial += alpha > 0 && alpha < 255;
        }
      }
      EXPECT_GT(clear, size * size / 8) << "icon " << id << " size " << size;
    }
    EXPECT_GT(partial, 16) << "icon " << id << " has no smoothed edges";
  }
}

struct StripCase {
  int id;
  int images;
  int size;
};

TEST(Resources, BitmapStripsHaveOneSquarePerImageOnTheMaskColour) {
  const StripCase cases[] = {{IDB_TOOLBAR, TB_IMAGE_COUNT, 16},
                             {IDB_TOOLBAR24, TB_IMAGE_COUNT, 24},
                             {IDB_TREE, TREE_IMAGE_COUNT, 16}};
  EXPECT_EQ(TB_IMAGE_COUNT, 12);
  EXPECT_EQ(TREE_IMAGE_COUNT, 7);
  for (const StripCase& c : cases) {
    ui::BitmapHandle bmp(static_cast<HBITMAP>(LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(c.id),
                                                         IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    ASSERT_TRUE(bmp) << c.id;
    DIBSECTION ds{};
    ASSERT_EQ(GetObjectA(bmp.get(), sizeof(ds), &ds), static_cast<int>(sizeof(ds))) << c.id;
    EXPECT_EQ(ds.dsBm.bmWidth, c.images * c.size) << c.id;
    EXPECT_EQ(ds.dsBm.bmHeight, c.size) << c.id;
    EXPECT_EQ(ds.dsBm.bmBitsPixel, 24) << c.id;

    // Every square has both a drawing and some mask colour around it, and no two squares are alike.
    const auto* bits = static_cast<const BYTE*>(ds.dsBm.bmBits);
    std::set<Pixels> tiles;
    for (int t = 0; t < c.images; ++t) {
      int mask = 0, ink = 0;
      Pixels tile;
      for (int y = 0; y < c.size; ++y) {
        for (int x = t * c.size; x < (t + 1) * c.size; ++x) {
          const BYTE* p = bits + y * ds.dsBm.bmWidthBytes + x * 3;
          (p[0] == 255 && p[1] == 0 && p[2] == 255 ? mask : ink)++;
          tile.push_back(static_cast<DWORD>(p[0] | p[1] << 8 | p[2] << 16));
        }
      }
      EXPECT_GT(mask, c.size) << c.id << " image " << t;
      EXPECT_GT(ink, c.size * 2) << c.id << " image " << t;
      EXPECT_TRUE(tiles.insert(tile).second) << c.id << " image " << t << " repeats";
    }

    // And the strip splits into an image list as the toolbar and the tree will use it.
    HIMAGELIST list = ImageList_Create(c.size, c.size, ILC_COLOR24 | ILC_MASK, c.images, 0);
    ASSERT_TRUE(list);
    ui::BitmapHandle copy(static_cast<HBITMAP>(
        LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(c.id), IMAGE_BITMAP, 0, 0, 0)));
    EXPECT_EQ(ImageList_AddMasked(list, copy.get(), RGB(255, 0, 255)), 0) << c.id;
    EXPECT_EQ(ImageList_GetImageCount(list), c.images) << c.id;
    ImageList_Destroy(list);
  }
}

std::string VersionText(const std::string& exe, const char* name) {
  DWORD ignored = 0;
  DWORD size = GetFileVersionInfoSizeA(exe.c_str(), &ignored);
  if (size == 0) return "(no version block)";
  std::vector<char> block(size);
  if (!GetFileVersionInfoA(exe.c_str(), 0, size, block.data())) return "(unreadable)";
  std::string path = std::string("\\StringFileInfo\\040904b0\\") + name;
  void* value = nullptr;
  UINT len = 0;
  if (!VerQueryValueA(block.data(), path.c_str(), &value, &len) || !value) return "(missing)";
  return static_cast<const char*>(value);
}

TEST(Resources, VersionBlockNamesTheProduct) {
  for (const std::string& exe : Executables()) {
    EXPECT_EQ(VersionText(exe, "ProductName"), "Vexillor") << exe;
    EXPECT_EQ(VersionText(exe, "ProductVersion"), "2.06") << exe;
  }
}

TEST(Resources, ManifestAsksForCommonControlsSix) {
  for (const std::string& exe : Executables()) {
    HMODULE mod = LoadLibraryExA(exe.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_TRUE(mod) << exe;
    HRSRC res = FindResourceA(mod, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(24));  // RT_MANIFEST
    ASSERT_TRUE(res) << exe;
    const char* text = static_cast<const char*>(LockResource(LoadResource(mod, res)));
    std::string manifest(text, SizeofResource(mod, res));
    EXPECT_NE(manifest.find("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""), std::string::npos)
        << manifest;
    FreeLibrary(mod);
  }
  // The manifest is in force for this process: the common controls that its imports were bound to are
  // version 6.
  InitCommonControls();
  HMODULE comctl = nullptr;
  ASSERT_TRUE(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                 reinterpret_cast<LPCSTR>(reinterpret_cast<void*>(&ImageList_Create)), &comctl));
  // Version 6 comes only from the side-by-side assembly; the version numbers cannot tell, as Wine's
  // copies report 5 from DllGetVersion and in their file version either way.
  char where[MAX_PATH] = "";
  GetModuleFileNameA(comctl, where, MAX_PATH);
  std::string path = where;
  for (char& ch : path) ch = static_cast<char>(tolower(static_cast<unsigned char>(ch)));
  EXPECT_NE(path.find("\\winsxs\\"), std::string::npos) << where;
  EXPECT_NE(path.find("microsoft.windows.common-controls_6595b64144ccf1df_6."), std::string::npos) << where;
}

}  // namespace
