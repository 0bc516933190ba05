#include "platform/simulated/values.h"

#include "platform/simulated/channel.h"
#include "platform/value_codec.h"

namespace simulated {

using driver::Datum;
using platform::ElementReference;
using platform::tagged;
using platform::ValueKind;

namespace {

struct Packer {
  Datum operator()(const ax::Opaque& value) const {
    return tagged(ValueKind::opaque, driver::pack(objectOf<std::int64_t>(value)));
  }
  Datum operator()(const ax::Element& value) const {
    return tagged(ValueKind::element, driver::pack(objectOf<ElementReference>(value)));
  }
  Datum operator()(const std::vector<ax::Value>& values) const {
    Datum::List list;
    for (const ax::Value& value : values) list.push_back(packValue(value));
    return tagged(ValueKind::list, Datum(std::move(list)));
  }
  template <class T>
  Datum operator()(const T& value) const {
    return platform::packPlain(value);
  }
};

}  // namespace

Datum packValue(const ax::Value& value) { return std::visit(Packer{}, value.data); }

ax::Value unpackValue(const Datum& datum) {
  const platform::Tagged parts(datum);
  if (parts.kind == ValueKind::opaque) {
    return {makeHandle<ax::Opaque>(driver::unpack<std::int64_t>(parts.payload()))};
  }
  if (parts.kind == ValueKind::element) {
    return {makeElement(driver::unpack<ElementReference>(parts.payload()))};
  }
  if (auto plain = platform::unpackPlain<ax::Value>(parts)) return std::move(*plain);
  const auto& items = driver::datum_detail::as<Datum::List>(parts.payload());
  std::vector<ax::Value> values;
  values.reserve(items.size());
  for (const Datum& item : items) values.push_back(unpackValue(item));
  return {std::move(values)};
}

ax::Element makeElement(const ElementReference& reference) {
  return makeHandle<ax::Element>(reference);
}

}  // namespace simulated
