// The icon lists as Apply reads them. Kept apart from the plan builder so that the builder needs no
// window: tests and the benchmark can give it values of their own.
#include "icons/IconApply.h"
#include "ui/ListBoxIcons.h"

namespace vx {
namespace {

const ui::ListBoxIcons* ListOf(const IconLists& lists, int tab) {
  return tab >= 0 && tab < static_cast<int>(lists.size()) ? lists[tab] : nullptr;
}

}  // namespace

std::string ListBoxValues::ItemFullPath(int tab, const std::string& key) const {
  const ui::ListBoxIcons* list = ListOf(lists_, tab);
  return list ? list->ItemFullPath(key) : std::string();
}

std::string ListBoxValues::ItemCaption(int tab, const std::string& key) const {
  const ui::ListBoxIcons* list = ListOf(lists_, tab);
  return list ? list->ItemCaption(key) : std::string();
}

std::string ListBoxValues::ItemFullPathmouse(int tab, const std::string& key) const {
  const ui::ListBoxIcons* list = ListOf(lists_, tab);
  return list ? list->ItemFullPathmouse(key) : std::string();
}

Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const IconLists& lists, const IconApplyOptions& options) {
  return BuildIconApplyPlan(env, catalogue, ListBoxValues(lists), options);
}

UndoRecord ApplyIconChanges(const Environment& env, const std::vector<IconItem>& catalogue,
                            const IconLists& lists, const IconApplyOptions& options,
                            bool& rebuildCachePending, bool& restartNeeded, bool& restartLater,
                            const std::function<void()>& refreshFolderTree) {
  return ApplyIconChanges(env, catalogue, ListBoxValues(lists), options, rebuildCachePending, restartNeeded,
                          restartLater, refreshFolderTree);
}

}  // namespace vx
