#include "platform/simulated/values.h"

#include "platform/simulated/channel.h"

namespace simulated {

using driver::Datum;
using platform::ElementReference;
using platform::ValueKind;

namespace {

Datum tagged(ValueKind kind, Datum payload) {
  return Datum(Datum::List{driver::pack(kind), std::move(payload)});
}

struct Packer {
  Datum operator()(const ax::Opaque& value) const {
    return tagged(ValueKind::opaque, Datum(objectOf<std::int64_t>(value)));
  }
  Datum operator()(const std::string& value) const {
    return tagged(ValueKind::text, driver::pack(value));
  }
  Datum operator()(bool value) const { return tagged(ValueKind::boolean, driver::pack(value)); }
  Datum operator()(std::int64_t value) const {
    return tagged(ValueKind::integer, driver::pack(value));
  }
  Datum operator()(double value) const { return tagged(ValueKind::number, driver::pack(value)); }
  Datum operator()(const ax::Element& value) const {
    return tagged(ValueKind::element, driver::pack(objectOf<ElementReference>(value)));
  }
  Datum operator()(const std::vector<ax::Value>& values) const {
    Datum::List list;
    for (const ax::Value& value : values) list.push_back(packValue(value));
    return tagged(ValueKind::list, Datum(std::move(list)));
  }
  Datum operator()(platform::Point value) const {
    return tagged(ValueKind::point, driver::pack(value));
  }
  Datum operator()(platform::Size value) const {
    return tagged(ValueKind::size, driver::pack(value));
  }
  Datum operator()(const platform::Rect& value) const {
    return tagged(ValueKind::rect, driver::pack(value));
  }
  Datum operator()(const ax::Range& value) const {
    return tagged(ValueKind::range, driver::pack(value));
  }
};

template <class T>
ax::Value valueOf(const Datum& payload) {
  return ax::Value{driver::unpack<T>(payload)};
}

}  // namespace

Datum packValue(const ax::Value& value) { return std::visit(Packer{}, value.data); }

ax::Element makeElement(const ElementReference& reference) {
  return makeHandle<ax::Element>(reference);
}

ax::Value unpackValue(const Datum& datum) {
  using driver::datum_detail::as;
  const auto& parts = as<Datum::List>(datum);
  if (parts.size() != 2) throw driver::MalformedDatum();
  const Datum& payload = parts[1];
  switch (driver::unpack<ValueKind>(parts[0])) {
    case ValueKind::opaque:
      return {makeHandle<ax::Opaque>(driver::unpack<std::int64_t>(payload))};
    case ValueKind::text:
      return valueOf<std::string>(payload);
    case ValueKind::boolean:
      return valueOf<bool>(payload);
    case ValueKind::integer:
      return valueOf<std::int64_t>(payload);
    case ValueKind::number:
      return valueOf<double>(payload);
    case ValueKind::element:
      return {makeElement(driver::unpack<ElementReference>(payload))};
    case ValueKind::list: {
      const auto& items = as<Datum::List>(payload);
      std::vector<ax::Value> values;
      values.reserve(items.size());
      for (const Datum& item : items) values.push_back(unpackValue(item));
      return {std::move(values)};
    }
    case ValueKind::point:
      return valueOf<platform::Point>(payload);
    case ValueKind::size:
      return valueOf<platform::Size>(payload);
    case ValueKind::rect:
      return valueOf<platform::Rect>(payload);
    case ValueKind::range:
      return valueOf<ax::Range>(payload);
  }
  throw driver::MalformedDatum();
}

}  // namespace simulated
