#include "simulator/companion/trace_text.h"

#include <nlohmann/json.hpp>

#include "simulator/mac/json_text.h"

namespace companion {

namespace {

using nlohmann::json;

constexpr std::size_t textBytesMax = 200;

json jsonOf(const driver::Datum& datum);

struct Converter {
  json operator()(std::monostate /*nothing*/) const { return nullptr; }
  json operator()(bool value) const { return value; }
  json operator()(std::int64_t value) const { return value; }
  json operator()(double value) const { return value; }
  json operator()(const std::string& value) const {
    return simulator::textJson(value, textBytesMax);
  }
  json operator()(const driver::Datum::List& values) const {
    json list = json::array();
    for (const driver::Datum& value : values) list.push_back(jsonOf(value));
    return list;
  }
};

json jsonOf(const driver::Datum& datum) { return std::visit(Converter{}, datum.data); }

}  // namespace

std::string traceJson(const simulator::TraceEntry& entry, simulator::Pid client) {
  json line = json::object();
  line["answer"] = jsonOf(entry.answer);
  line["arguments"] = Converter{}(entry.call.arguments);
  line["at"] = static_cast<double>(entry.at) / 1000;
  line["call"] = platform::nameOf(entry.call.function);
  line["faulty"] = entry.faulty;
  line["pid"] = client;
  return simulator::jsonLine(line);
}

}  // namespace companion
