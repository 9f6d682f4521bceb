// The icon lists as Apply reads them. Kept apart from the plan builder so that the builder needs no
// window: tests and the benchmark can give it values of their own.
#include "icons/IconApply.h"
#include "ui/ListBoxIcons.h"

namespace vx {
namespace {

// The list of the tab when it holds the key. Apply asks for keys a list does not hold ("Printer",
// entries of other editions), and those must read as empty texts: asked directly, the control would
// answer from its next free slot (",0"), or fail when all its slots are taken.
const ui::ListBoxIcons* ListHolding(const IconLists& lists, int tab, const std::string& key) {
  const ui::ListBoxIcons* list = tab >= 0 && tab < static_cast<int>(lists.size()) ? lists[tab] : nullptr;
  if (!list) return nullptr;
  for (int i = 0; i < list->Count(); ++i)
    if (list->Key(i) == key) return list;
  return nullptr;
}

}  // namespace

std::string ListBoxValues::ItemFullPath(int tab, const std::string& key) const {
  const ui::ListBoxIcons* list = ListHolding(lists_, tab, key);
  return list ? list->ItemFullPath(key) : std::string();
}

std::string ListBoxValues::ItemCaption(int tab, const std::string& key) const {
  const ui::ListBoxIcons* list = ListHolding(lists_, tab, key);
  return list ? list->ItemCaption(key) : std::string();
}

std::string ListBoxValues::ItemFullPathmouse(int tab, const std::string& key) const {
  const ui::ListBoxIcons* list = ListHolding(lists_, tab, key);
  return list ? list->ItemFullPathmouse(key) : std::string();
}

Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const IconLists& lists, const IconApplyOptions& options) {
  return BuildIconApplyPlan(env, catalogue, ListBoxValues(lists), options);
}

}  // namespace vx
