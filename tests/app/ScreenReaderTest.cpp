// Every icon tab's list read from another process through the accessibility API, as a screen reader
// reads it, and the selection announced as it moves.
#include <oleacc.h>

#include <vector>

#include "MainWindowFixture.h"
#include "support/ScreenReader.h"

namespace {

using vxtest::MainWindowTest;

std::vector<std::pair<DWORD, LONG>>* heardEvents = nullptr;  // a win-event hook has no context argument

void CALLBACK OnWinEvent(HWINEVENTHOOK, DWORD event, HWND, LONG object, LONG child, DWORD, DWORD) {
  if (heardEvents && object == OBJID_CLIENT) heardEvents->push_back({event, child});
}

TEST_F(MainWindowTest, ScreenReaderHearsEveryRowOfEveryIconTabAndTheSelectedOne) {
  auto m = Open();
  int tabsRead = 0;
  for (int tab = 0; tab <= vx::Main::kTabCount; ++tab) {
    ui::ListBoxIcons* list = m->List(tab);
    if (!list) continue;
    SCOPED_TRACE(tab);
    ++tabsRead;
    list->SelItemIndex(static_cast<int16_t>(list->Count() - 1));  // the last row, off screen on long tabs
    const vxtest::HeardList heard = vxtest::ReadAsScreenReader(list->surface());
    ASSERT_EQ(heard.error, "");
    EXPECT_EQ(heard.role, ROLE_SYSTEM_LIST);
    ASSERT_EQ(heard.count, list->Count());
    ASSERT_EQ(heard.items.size(), static_cast<size_t>(list->Count()));
    for (int i = 0; i < list->Count(); ++i) {
      const vxtest::HeardItem& item = heard.items[static_cast<size_t>(i)];
      EXPECT_EQ(item.name, list->ItemCaption(list->Key(i))) << i;
      EXPECT_EQ(item.role, ROLE_SYSTEM_LISTITEM) << i;
      EXPECT_EQ((item.state & STATE_SYSTEM_SELECTED) != 0, i == list->Count() - 1) << i;
      EXPECT_NE(item.state & STATE_SYSTEM_SELECTABLE, 0) << i;
    }
    EXPECT_EQ(heard.selection, list->Count());
  }
  EXPECT_GE(tabsRead, 6);
  EXPECT_TRUE(Close(*m));
}

// Keys and clicks move the selection: each move is announced with the new row's child id, once.
TEST_F(MainWindowTest, SelectionMovesAreAnnouncedToScreenReaders) {
  auto m = Open();
  ui::ListBoxIcons* list = m->List(m->CurrentTab());
  ASSERT_NE(list, nullptr);
  ASSERT_GE(list->Count(), 3);
  SetFocus(list->surface());
  std::vector<std::pair<DWORD, LONG>> events;
  heardEvents = &events;
  HWINEVENTHOOK hook = SetWinEventHook(EVENT_OBJECT_FOCUS, EVENT_OBJECT_SELECTION, nullptr, &OnWinEvent,
                                       GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
  ASSERT_NE(hook, nullptr);
  const struct { int key; LONG child; } moves[] = {{VK_DOWN, 2}, {VK_DOWN, 3}, {VK_UP, 2}, {VK_UP, 1}, {VK_UP, 0}};
  for (const auto& move : moves) {
    SCOPED_TRACE(move.child);
    events.clear();
    SendMessageA(list->surface(), WM_KEYDOWN, static_cast<WPARAM>(move.key), 0);
    ui::DoEvents();
    const std::vector<std::pair<DWORD, LONG>> expected =
        move.child ? std::vector<std::pair<DWORD, LONG>>{{EVENT_OBJECT_FOCUS, move.child},
                                                          {EVENT_OBJECT_SELECTION, move.child}}
                   : std::vector<std::pair<DWORD, LONG>>{};  // nothing above the first row
    EXPECT_EQ(events, expected);
  }
  UnhookWinEvent(hook);
  heardEvents = nullptr;
  EXPECT_TRUE(Close(*m));
}

}  // namespace
