#include "accessibility/menu.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/labels.h"
#include "accessibility/messages.h"
#include "accessibility/walk.h"
#include "main/replies.h"

namespace driver {

namespace {

// Items that were opened recently, or fonts, may be thousands.
constexpr std::size_t candidatesMax = 20'000;
constexpr std::array<std::string_view, 2> ellipses = {"\u2026", "..."};

/// The element's title; empty when it has none.
std::string menuTitle(Snapshot& item) {
  const std::string* title = item.text(Attribute::title);
  return title != nullptr ? *title : "";
}

/// The texts with the separator between them.
std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  std::string result;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) result += separator;
    result += text;
  }
  return result;
}

/// Appends as many as there is room for.
void appendSome(std::vector<Snapshot>& items, std::vector<Snapshot> more) {
  const std::size_t count = std::min(more.size(), candidatesMax - items.size());
  std::move(more.begin(), more.begin() + static_cast<std::ptrdiff_t>(count),
            std::back_inserter(items));
}

/// The items of the application's menu bar, in order; none when it cannot be read.
std::vector<Snapshot> axMenuBarItems(const ax::Element& application) {
  std::vector<Snapshot> items;
  std::optional<ax::Element> bar = axElement(application, "AXMenuBar");
  if (bar) appendSome(items, Snapshot(std::move(*bar)).takeChildren());
  return items;
}

/// The first item whose key is the title's; else the first whose key begins with it.
Snapshot* itemTitled(std::vector<Snapshot>& candidates, const std::string& title) {
  const std::string wanted = menuKey(title);
  Snapshot* beginning = nullptr;
  for (Snapshot& candidate : candidates) {
    const std::string key = menuKey(menuTitle(candidate));
    if (key == wanted) return &candidate;
    if (beginning == nullptr && !key.empty() && key.starts_with(wanted)) beginning = &candidate;
  }
  return beginning;
}

Reply noItem(const std::string& title, const std::vector<std::string>& walked,
             std::vector<Snapshot>& candidates) {
  std::vector<std::string> available;
  for (Snapshot& candidate : candidates) available.push_back(menuTitle(candidate));
  std::erase(available, "");
  return refusal("no menu item " + quoted(title) + " under " +
                 (walked.empty() ? "the menu bar" : joined(walked, " > ")) +
                 "; available: " + joined(available, " | "));
}

/// An item's child is its menu, and that menu's children are the items below.
std::vector<Snapshot> itemsUnder(Snapshot& item) {
  std::vector<Snapshot> items;
  std::size_t visits = 0;
  for (Snapshot& menu : item.children()) {
    // Menus without items take no room, and cost a message each.
    if (++visits > candidatesMax) break;
    appendSome(items, menu.takeChildren());
  }
  return items;
}

Reply pressItem(Snapshot& item, const std::string& walked) {
  // A press of it would do nothing. One that does not say whether it is enabled is tried.
  if (item.isFalse(Attribute::enabled)) return refusal("menu item " + walked + " is disabled");
  Reply reply = actionReply(messages::perform(item.element(), "AXPress"));
  reply["pressed"] = walked;
  return reply;
}

}  // namespace

std::string menuKey(std::string_view title) {
  // An ellipsis says that a dialog follows. Whoever names the item writes it in either way, or not.
  std::string plain(title);
  for (const std::string_view ellipsis : ellipses) {
    for (std::size_t at = 0; (at = plain.find(ellipsis, at)) != std::string::npos;) {
      plain.erase(at, ellipsis.size());
    }
  }
  return comparableLabel(plain);
}

Reply axMenu(const ax::Element& application, const std::vector<std::string>& path) {
  if (path.empty()) return refusal("empty menu path");
  std::vector<std::string> walked;
  std::vector<Snapshot> candidates = axMenuBarItems(application);
  while (true) {
    const std::string& title = path[walked.size()];
    Snapshot* item = itemTitled(candidates, title);
    if (item == nullptr) return noItem(title, walked, candidates);
    walked.push_back(menuTitle(*item));
    if (walked.size() == path.size()) return pressItem(*item, joined(walked, " > "));
    candidates = itemsUnder(*item);
  }
}

void axMenuCommand(const Arguments& arguments) {
  const std::vector<std::string> path(arguments.begin() + 3, arguments.end());
  emit(axMenu(axApp(arguments[2]), path));
}

void axMenubarCommand(const Arguments& arguments) {
  Value::List menus;
  for (Snapshot& item : axMenuBarItems(axApp(arguments[2]))) menus.emplace_back(menuTitle(item));
  emit({{"ok", true}, {"menus", menus}});
}

namespace {

// All items together: an item that holds itself would be looked through anew at each visit.
constexpr std::size_t innerElementsMax = 20'000;
constexpr int innerDepthMax = 60;

/// Collects static texts inside items, level by level.
class InnerTexts {
 public:
  explicit InnerTexts(const Batch& each) : each_(each) {}

  Value::List in(Snapshot& item) {
    Value::List texts;
    std::deque<Entry> queue;
    append(queue, item, 0);
    for (; !queue.empty() && left_ > 0; --left_) {
      const auto [element, depth] = queue.front();
      queue.pop_front();
      element->read(each_);
      if (const std::string* text = staticText(*element)) texts.emplace_back(*text);
      if (depth < innerDepthMax) append(queue, *element, depth);
    }
    return texts;
  }

 private:
  struct Entry {
    Snapshot* element = nullptr;
    int depth = 0;  // below the item
  };

  void append(std::deque<Entry>& queue, Snapshot& parent, int depth) {
    std::vector<Snapshot>& children = parent.children();
    const std::size_t room = left_ > queue.size() ? left_ - queue.size() : 0;
    const std::size_t count = std::min(children.size(), room);
    for (std::size_t i = 0; i < count; ++i) queue.push_back({&children[i], depth + 1});
  }

  const Batch& each_;
  std::size_t left_ = innerElementsMax;
};

}  // namespace

void axPopupItemsCommand(const Arguments& arguments) {
  // A walk takes its last root first. Here windows come in their order, as items do: the list is
  // read from top to bottom.
  std::vector<ax::Element> windows = axWindows(axApp(arguments[2]));
  std::reverse(windows.begin(), windows.end());
  Walk walk(std::move(windows), infoAttributes, controlBounds, Walk::Siblings::firstFirst);
  InnerTexts innerTexts(walk.batch());
  Value::List items;
  while (Snapshot* element = walk.next()) {
    if (element->role() != "AXMenuItem") continue;
    Value::Object item = axInfo(*element, walk.batch());
    item["texts"] = innerTexts.in(*element);
    items.emplace_back(std::move(item));
  }
  emit({{"ok", true}, {"items", items}});
}

}  // namespace driver
