#include "simulator/companion/messages.h"

namespace companion {

using driver::Datum;
using driver::MalformedDatum;

std::vector<std::string> texts(const Datum::List& parts, std::size_t first) {
  std::vector<std::string> result;
  for (std::size_t i = first; i < parts.size(); ++i) {
    result.push_back(driver::unpack<std::string>(parts[i]));
  }
  return result;
}

std::map<std::string, std::string> variables(const std::vector<std::string>& settings) {
  std::map<std::string, std::string> result;
  for (const std::string& setting : settings) {
    const std::size_t sign = setting.find('=');
    if (sign != std::string::npos)
      result.emplace(setting.substr(0, sign), setting.substr(sign + 1));
  }
  return result;
}

Datum datumOf(const ControlAnswer& answer) {
  return Datum(Datum::List{driver::pack(answer.ok), driver::pack(answer.lines)});
}

platform::Call callOf(const Datum::List& parts) {
  if (parts.size() != 2) throw MalformedDatum();
  const auto function = driver::unpack<std::int64_t>(parts[0]);
  const auto count = static_cast<std::int64_t>(platform::functionNames.size());
  if (function < 0 || function >= count) throw MalformedDatum();
  return {static_cast<platform::Function>(function), driver::unpack<Datum::List>(parts[1])};
}

}  // namespace companion
