#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/roles.h"
#include "accessibility/snapshot.h"
#include "accessibility/walk.h"
#include "base/numbers.h"
#include "main/replies.h"

namespace driver {

namespace {

Value::Object listEntry(Snapshot& element, const Batch& each) {
  Value::Object entry = axInfo(element, each);
  // A field's text is what was typed into it, and no name for it.
  if (entry["label"] == Value("") && !hasRole(textRoles, element.role())) {
    entry["label"] = axText(element, each);
  }
  if (element.isFalse(Attribute::enabled)) entry["disabled"] = true;
  return entry;
}

/// The controls in the window scope that show, as descriptions, `limit` of them at most. One
/// without a label has the text inside it for one; one that is off has "disabled".
Value::List axList(const ax::Element& application, std::size_t limit = 400) {
  Value::List entries;
  Walk walk(axWindows(application), infoAttributes | AttributeSet{Attribute::enabled},
            controlBounds);
  while (entries.size() < limit) {
    Snapshot* element = walk.next();
    if (element == nullptr) break;
    if (!hasRole(actionableRoles, element->role()) || !isLargeEnoughToSee(*element)) continue;
    entries.emplace_back(listEntry(*element, walk.batch()));
  }
  return entries;
}

// A dump shows every element whole, so it stops far earlier than a search does.
constexpr WalkBounds dumpBounds = {4000, 80};

// Values are read with the rest: each of them is shown. Elsewhere they are left out of the batch,
// since a long document is a value too.
constexpr AttributeSet dumpAttributes =
    infoAttributes | AttributeSet{Attribute::subrole, Attribute::value};

/// What tells where a slider, a check box or a progress indicator stands.
std::optional<std::string> numberText(Snapshot& element) {
  if (const auto* integer = element.get<std::int64_t>(Attribute::value)) {
    return std::to_string(*integer);
  }
  const std::optional<double> number = element.number(Attribute::value);
  return number ? std::optional(decimalText(*number)) : std::nullopt;
}

Value::Object dumpEntry(Snapshot& element, int depth, const Batch& each) {
  Value::Object entry = axInfo(element, each);
  entry["depth"] = depth;
  if (const std::string* subrole = element.text(Attribute::subrole)) entry["subrole"] = *subrole;
  if (const auto number = numberText(element)) entry["value"] = *number;
  return entry;
}

}  // namespace

void axListCommand(const Arguments& arguments) {
  emit({{"ok", true}, {"elements", axList(axApp(arguments[2]))}});
}

void axDumpCommand(const Arguments& arguments) {
  Value::List entries;
  // In the order in which a person reads, since a person reads it.
  Walk walk(axWindows(axApp(arguments[2])), dumpAttributes, dumpBounds, Walk::Siblings::firstFirst);
  while (Snapshot* element = walk.next()) {
    entries.emplace_back(dumpEntry(*element, walk.depth(), walk.batch()));
  }
  emit({{"ok", true}, {"elements", entries}});
}

}  // namespace driver
