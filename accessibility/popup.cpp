#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/walk.h"
#include "main/replies.h"

namespace driver {

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
      const std::string* value =
          element->role() == "AXStaticText" ? element->text(Attribute::value) : nullptr;
      if (value != nullptr && !value->empty()) texts.emplace_back(*value);
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
