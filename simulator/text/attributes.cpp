#include "simulator/text/attributes.h"

#include <limits>
#include <utility>

#include "base/numbers.h"

namespace simulator {

namespace {

constexpr const char* plainValue = "a text, a number, true or false";
constexpr const char* anyValue =
    "a text, a number, true, false, point, size, rect, range, opaque, element or elements";

AttributeValue readValue(Words& words, const char* owner, const char* what) {
  if (words.nextIs(Token::Kind::text)) return words.text(owner, what);
  if (words.take("true")) return true;
  if (words.take("false")) return false;
  if (words.nextIs(Token::Kind::word) && driver::parseInt64(words.peek()->text)) {
    return words.integer(owner, what, std::numeric_limits<std::int64_t>::min(),
                         std::numeric_limits<std::int64_t>::max());
  }
  return words.number(owner, what);
}

/// The value, or none when it is made of elements: that is then among the links.
std::optional<AttributeValue> readAnyValue(Words& words, const std::string& name,
                                           std::vector<LinkDraft>& links) {
  if (words.take("point")) return words.point("point");
  if (words.take("size")) return words.size("size");
  if (words.take("rect")) return words.rect("rect");
  if (words.take("range")) return words.range("range");
  if (words.take("opaque")) {
    return Opaque{static_cast<std::uint64_t>(words.integer(
        "opaque", "a hash of 0 or more", 0, std::numeric_limits<std::int64_t>::max()))};
  }
  if (words.take("element")) {
    links.push_back({name, {words.name("element", "the label of an element")}, false});
    return std::nullopt;
  }
  if (words.take("elements")) {
    LinkDraft link{name, {}, true};
    while (words.nextIs(Token::Kind::text)) link.labels.push_back(words.text("elements", ""));
    links.push_back(std::move(link));
    return std::nullopt;
  }
  return readValue(words, "attribute", anyValue);
}

}  // namespace

void putAttribute(Words& words, Attributes& attributes, const std::string& name,
                  AttributeValue value) {
  if (!attributes.emplace(name, std::move(value)).second) words.fail(name + " is given twice");
}

AttributeValue readPlainValue(Words& words, const char* owner) {
  return readValue(words, owner, plainValue);
}

void readAttributeOption(Words& words, Attributes& attributes, std::vector<LinkDraft>& links) {
  const std::string name = words.word("attribute", "the name of an attribute");
  auto value = readAnyValue(words, name, links);
  if (value) putAttribute(words, attributes, name, std::move(*value));
}

void readFailingOption(Words& words, std::map<std::string, ax::Error>& failing) {
  const std::string name = words.word("failing", "the name of an attribute");
  const auto code = words.integer("failing", "an error code below 0",
                                  std::numeric_limits<std::int32_t>::min(), -1);
  if (!failing.emplace(name, static_cast<ax::Error>(code)).second) {
    words.fail("'failing " + name + "' is given twice");
  }
}

}  // namespace simulator
