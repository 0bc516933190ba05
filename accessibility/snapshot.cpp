#include "accessibility/snapshot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "accessibility/messages.h"
#include "base/geometry.h"
#include "platform/text.h"

namespace driver {

namespace {

struct Named {
  Attribute attribute;
  const char* name;
};

constexpr std::array<Named, attributeCount> attributeNames = {
    {{Attribute::role, "AXRole"},
     {Attribute::subrole, "AXSubrole"},
     {Attribute::children, "AXChildren"},
     {Attribute::title, "AXTitle"},
     {Attribute::description, "AXDescription"},
     {Attribute::placeholder, "AXPlaceholderValue"},
     {Attribute::help, "AXHelp"},
     {Attribute::position, "AXPosition"},
     {Attribute::size, "AXSize"},
     {Attribute::enabled, "AXEnabled"},
     {Attribute::editable, "AXEditable"},
     {Attribute::focused, "AXFocused"},
     {Attribute::modal, "AXModal"},
     {Attribute::parent, "AXParent"},
     {Attribute::window, "AXWindow"},
     {Attribute::value, "AXValue"},
     {Attribute::lowestValue, "AXMinValue"},
     {Attribute::highestValue, "AXMaxValue"},
     {Attribute::selectedRange, "AXSelectedTextRange"},
     {Attribute::menuCharacter, "AXMenuItemCmdChar"},
     {Attribute::menuModifiers, "AXMenuItemCmdModifiers"}}};

constexpr bool areInOrder() {
  for (std::size_t i = 0; i < attributeCount; ++i) {
    if (static_cast<std::size_t>(attributeNames[i].attribute) != i) return false;
  }
  return true;
}
static_assert(areInOrder());

}  // namespace

const char* nameOf(Attribute attribute) {
  return attributeNames[static_cast<std::size_t>(attribute)].name;
}

Batch::Batch(AttributeSet set) : set_(set) {
  for (std::size_t i = 0; i < attributeCount; ++i) {
    if (set.contains(static_cast<Attribute>(i))) names_.push_back(attributeNames[i].name);
  }
}

namespace {

bool isElement(const ax::Value& value) { return value.get<ax::Element>() != nullptr; }

/// The elements of a list of nothing else, moved out of it: a list may have a million of them.
std::vector<Snapshot> snapshotsIn(std::optional<ax::Value>& value) {
  std::vector<Snapshot> snapshots;
  auto* list = value ? std::get_if<std::vector<ax::Value>>(&value->data) : nullptr;
  if (list == nullptr || !std::all_of(list->begin(), list->end(), isElement)) return snapshots;
  snapshots.reserve(list->size());
  for (ax::Value& item : *list) {
    snapshots.emplace_back(std::move(std::get<ax::Element>(item.data)));
  }
  return snapshots;
}

}  // namespace

// A walk reads each element once, in one message, and that is all most elements are asked for. So
// its slots are kept as they came, found by counting in the set, and what is read later is a short
// list: an element costs two allocations, of which a map would make twenty.
struct Snapshot::Known {
  struct Later {
    Attribute attribute;
    ax::Slot slot;
  };

  AttributeSet all;
  AttributeSet together;        // what the first message asked for
  std::vector<ax::Slot> slots;  // what it gave, in that order
  std::vector<Later> later;     // what was read after it, the newest last
  std::optional<std::vector<Snapshot>> children;
};

Snapshot::Snapshot(ax::Element element) : element_(std::move(element)) {}
Snapshot::Snapshot(Snapshot&& other) noexcept = default;
Snapshot& Snapshot::operator=(Snapshot&& other) noexcept = default;
Snapshot::~Snapshot() = default;

void Snapshot::read(const Batch& batch) {
  if (known_) {
    read(batch.set());
    return;
  }
  // Before the message: an answer with errors is one too, and is not asked for again.
  known_ = std::make_unique<Known>();
  known_->slots = messages::attributes(element_, batch.names());
  known_->together = known_->all = batch.set();
}

void Snapshot::read(AttributeSet set) {
  const AttributeSet missing = known_ ? set - known_->all : set;
  if (missing.empty()) return;
  const Batch batch(missing);
  if (!known_) {
    read(batch);
    return;
  }
  std::vector<ax::Slot> slots = messages::attributes(element_, batch.names());
  for (std::size_t i = 0; i < attributeCount; ++i) {
    const auto attribute = static_cast<Attribute>(i);
    if (!missing.contains(attribute)) continue;
    known_->later.push_back({attribute, std::move(slots[missing.indexOf(attribute)])});
  }
  known_->all = known_->all | missing;
}

bool Snapshot::isTrue(Attribute attribute) {
  const bool* value = get<bool>(attribute);
  return value != nullptr && *value;
}

bool Snapshot::isFalse(Attribute attribute) {
  const bool* value = get<bool>(attribute);
  return value != nullptr && !*value;
}

std::optional<double> Snapshot::number(Attribute attribute) {
  if (const auto* integer = get<std::int64_t>(attribute)) return static_cast<double>(*integer);
  const auto* real = get<double>(attribute);
  return real != nullptr && std::isfinite(*real) ? std::optional(*real) : std::nullopt;
}

std::optional<ax::Element> Snapshot::related(Attribute attribute) {
  const auto* element = get<ax::Element>(attribute);
  return element != nullptr ? std::optional(*element) : std::nullopt;
}

std::string_view Snapshot::role() {
  const std::string* role = text(Attribute::role);
  return role != nullptr ? std::string_view(*role) : std::string_view();
}

std::vector<Snapshot>& Snapshot::children() {
  ax::Slot& slot = slotOf(Attribute::children);
  if (!known_->children) {
    known_->children = snapshotsIn(slot.value);
    slot.value.reset();
  }
  return *known_->children;
}

std::vector<Snapshot> Snapshot::takeChildren() {
  std::vector<Snapshot> taken = std::move(children());
  known_->children.reset();
  known_->all = known_->all - AttributeSet{Attribute::children};
  return taken;
}

void Snapshot::giveChildren(std::vector<ax::Element> children) {
  std::vector<Snapshot>& given = known_->children.emplace();
  given.reserve(children.size());
  for (ax::Element& child : children) given.emplace_back(std::move(child));
  known_->all = known_->all | AttributeSet{Attribute::children};
}

ax::Slot& Snapshot::slotOf(Attribute attribute) {
  if (!known_) known_ = std::make_unique<Known>();
  if (!known_->all.contains(attribute)) {
    ax::Reading reading = messages::attribute(element_, nameOf(attribute));
    known_->later.push_back({attribute, {std::move(reading.value), reading.outcome.error}});
    known_->all = known_->all | AttributeSet{attribute};
  }
  // From the newest on: children that were taken away and read again stand there twice.
  const auto newest =
      std::find_if(known_->later.rbegin(), known_->later.rend(),
                   [&](const Known::Later& later) { return later.attribute == attribute; });
  if (newest != known_->later.rend()) return newest->slot;
  return known_->slots[known_->together.indexOf(attribute)];
}

std::string axLabel(Snapshot& element) {
  // The title often suffices, but a round trip costs far more than three texts that are not used.
  element.read(labelAttributes);
  for (const Attribute attribute :
       {Attribute::title, Attribute::description, Attribute::placeholder, Attribute::help}) {
    const std::string* text = element.text(attribute);
    if (text != nullptr && !text->empty()) return *text;
  }
  return "";
}

std::optional<platform::Rect> axFrame(Snapshot& element) {
  element.read(frameAttributes);
  const auto* position = element.get<platform::Point>(Attribute::position);
  const auto* size = element.get<platform::Size>(Attribute::size);
  if (position == nullptr || size == nullptr) return std::nullopt;
  const platform::Rect frame{position->x, position->y, size->width, size->height};
  // Applications do report such frames. They compare with nothing, and JSON cannot say them.
  return isFinite(frame) ? std::optional(frame) : std::nullopt;
}

std::string axLabel(const ax::Element& element) {
  Snapshot now(element);
  return axLabel(now);
}

bool isLargeEnoughToSee(Snapshot& element) {
  const std::optional<platform::Rect> frame = axFrame(element);
  return frame && frame->width > 1 && frame->height > 1;
}

const std::string* staticText(Snapshot& element) {
  if (element.role() != "AXStaticText") return nullptr;
  const std::string* text = element.text(Attribute::value);
  return text != nullptr && !text->empty() ? text : nullptr;
}

namespace {

/// Pushes what a walk with `budget` visits left can still reach, the first child on top.
void pushChildren(std::vector<Snapshot*>& stack, std::vector<Snapshot>& children,
                  std::size_t budget) {
  for (std::size_t i = std::min(children.size(), budget); i > 0; --i) {
    stack.push_back(&children[i - 1]);
  }
}

void append(std::string& joined, const std::string* value) {
  if (value == nullptr) return;
  if (!joined.empty()) joined += ' ';
  joined += *value;
}

}  // namespace

std::string axText(Snapshot& element, const Batch& each, int budget, std::size_t maxLength) {
  std::string joined;
  std::vector<Snapshot*> stack = {&element};
  for (auto left = static_cast<std::size_t>(std::max(budget, 0)); left > 0 && !stack.empty();) {
    Snapshot& visited = *stack.back();
    stack.pop_back();
    --left;
    visited.read(each);
    append(joined, staticText(visited));
    pushChildren(stack, visited.children(), left);
  }
  return text::prefix(joined, maxLength);
}

std::string axText(const ax::Element& element, int budget, std::size_t maxLength) {
  Snapshot now(element);
  return axText(now, Batch(structureAttributes), budget, maxLength);
}

}  // namespace driver
