#include "base/datum.h"

#include <cstring>

namespace driver {

namespace {

constexpr std::size_t nestingMax = 64;

template <class T>
void appendRaw(T value, std::string& bytes) {
  char raw[sizeof(T)];
  std::memcpy(raw, &value, sizeof(T));
  bytes.append(raw, sizeof(T));
}

template <class T>
T takeRaw(std::string_view& bytes) {
  if (bytes.size() < sizeof(T)) throw MalformedDatum();
  T value;
  std::memcpy(&value, bytes.data(), sizeof(T));
  bytes.remove_prefix(sizeof(T));
  return value;
}

Datum decodeNested(std::string_view& bytes, std::size_t depth) {
  if (depth > nestingMax) throw MalformedDatum();
  switch (takeRaw<std::uint8_t>(bytes)) {
    case 0:
      return Datum();
    case 1:
      return Datum(takeRaw<std::uint8_t>(bytes) != 0);
    case 2:
      return Datum(takeRaw<std::int64_t>(bytes));
    case 3:
      return Datum(takeRaw<double>(bytes));
    case 4: {
      const auto size = takeRaw<std::uint32_t>(bytes);
      if (bytes.size() < size) throw MalformedDatum();
      std::string text(bytes.substr(0, size));
      bytes.remove_prefix(size);
      return Datum(std::move(text));
    }
    case 5: {
      Datum::List list;
      for (auto left = takeRaw<std::uint32_t>(bytes); left > 0; --left) {
        list.push_back(decodeNested(bytes, depth + 1));
      }
      return Datum(std::move(list));
    }
    default:
      throw MalformedDatum();
  }
}

struct Encoder {
  std::string& bytes;

  void operator()(std::monostate /*nothing*/) const {}
  void operator()(bool value) const { appendRaw<std::uint8_t>(value ? 1 : 0, bytes); }
  void operator()(std::int64_t value) const { appendRaw(value, bytes); }
  void operator()(double value) const { appendRaw(value, bytes); }
  void operator()(const std::string& value) const {
    appendRaw(static_cast<std::uint32_t>(value.size()), bytes);
    bytes += value;
  }
  void operator()(const Datum::List& value) const {
    appendRaw(static_cast<std::uint32_t>(value.size()), bytes);
    for (const Datum& item : value) encode(item, bytes);
  }
};

}  // namespace

void encode(const Datum& datum, std::string& bytes) {
  appendRaw(static_cast<std::uint8_t>(datum.data.index()), bytes);
  std::visit(Encoder{bytes}, datum.data);
}

Datum decode(std::string_view& bytes) { return decodeNested(bytes, 0); }

}  // namespace driver
