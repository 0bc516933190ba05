#include "tests/soak/contract_judge.h"

#include <fstream>
#include <map>
#include <stdexcept>

#include "tests/soak/schema.h"

namespace soak {

using nlohmann::json;

namespace {

/// What a command line without a command, or of no command, is answered by.
constexpr const char* noCommand = "no-command";

std::string schemaPath(const std::string& name) {
  return std::string(DRIVER_SOURCE_DIR) + "/packaging/contract/schemas/" + name + ".json";
}

/// Null when there is no schema of that name.
const Schema* schemaNamed(const std::string& name) {
  static std::map<std::string, std::optional<Schema>> read;
  const auto known = read.find(name);
  if (known != read.end()) return known->second ? &*known->second : nullptr;
  std::optional<Schema>& schema = read[name];
  const bool isName = name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == std::string::npos;
  if (std::ifstream file(schemaPath(name)); isName && !name.empty() && file) {
    schema.emplace(json::parse(file));
  }
  return schema ? &*schema : nullptr;
}

const Schema& schemaOf(const Step& step) {
  const Schema* schema = step.words.empty() ? nullptr : schemaNamed(step.words.front());
  if (schema == nullptr) schema = schemaNamed(noCommand);
  if (schema == nullptr) throw std::runtime_error("there is no schema at " + schemaPath(noCommand));
  return *schema;
}

}  // namespace

std::string lineOutsideOfContract(const Case& one, const Played& played) {
  for (std::size_t i = 0; i < played.steps.size(); ++i) {
    std::string_view rest = played.steps[i].output;
    while (!rest.empty()) {
      const std::size_t end = rest.find('\n');
      // What is not whole is the business of the rules.
      if (end == std::string_view::npos) break;
      const std::string line(rest.substr(0, end));
      rest.remove_prefix(end + 1);
      const json value = json::parse(line, nullptr, false);
      if (value.is_discarded() || !schemaOf(one.steps[i]).admits(value)) {
        return "step " + std::to_string(i + 1) + " wrote " + line;
      }
    }
  }
  return "";
}

std::string kindOfReply(const Step& step, const std::string& line) {
  const json value = json::parse(line, nullptr, false);
  return value.is_discarded() ? "" : schemaOf(step).alternativeOf(value);
}

std::vector<std::string> kindsOfReplies(const std::string& command) {
  const Schema* schema = schemaNamed(command);
  return schema == nullptr ? std::vector<std::string>() : schema->alternatives();
}

}  // namespace soak
