#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/walk.h"
#include "base/numbers.h"
#include "main/replies.h"

namespace driver {

namespace {

constexpr WalkBounds dumpBounds = {4000, 80};

// Values are read with the rest: each of them is shown.
constexpr AttributeSet dumpAttributes =
    infoAttributes | AttributeSet{Attribute::subrole, Attribute::value};

std::optional<std::string> numberText(Snapshot& element) {
  if (const auto* integer = element.get<std::int64_t>(Attribute::value)) {
    return std::to_string(*integer);
  }
  const std::optional<double> number = element.number(Attribute::value);
  return number ? std::optional(decimalText(*number)) : std::nullopt;
}

Value::Object entryFor(Snapshot& element, int depth, const Batch& each) {
  Value::Object entry = axInfo(element, each);
  entry["depth"] = depth;
  if (const std::string* subrole = element.text(Attribute::subrole)) entry["subrole"] = *subrole;
  if (const auto number = numberText(element)) entry["value"] = *number;
  return entry;
}

}  // namespace

void axDumpCommand(const Arguments& arguments) {
  Value::List entries;
  Walk walk(axWindows(axApp(arguments[2])), dumpAttributes, dumpBounds, Walk::Siblings::firstFirst);
  while (Snapshot* element = walk.next()) {
    entries.emplace_back(entryFor(*element, walk.depth(), walk.batch()));
  }
  emit({{"ok", true}, {"elements", entries}});
}

}  // namespace driver
