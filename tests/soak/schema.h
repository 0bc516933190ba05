#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace soak {

/// A JSON Schema, read once, that judges values by the million. It knows the part of the dialect of
/// 2020-12 that the contract is written in, and refuses to be made of anything else: Debian's
/// library for C++ knows draft 7, and passes over what it does not know.
class Schema {
 public:
  /// Throws std::runtime_error for a schema that uses what this does not know.
  explicit Schema(const nlohmann::json& text);

  bool admits(const nlohmann::json& value) const { return admits(root_, value); }

  /// The title of the first of its alternatives that admits the value; empty when none does.
  const std::string& alternativeOf(const nlohmann::json& value) const;

  /// The titles of all of them.
  std::vector<std::string> alternatives() const;

 private:
  using Index = std::size_t;

  /// A pattern of literal pieces with anything between them.
  using Pattern = std::vector<std::string>;

  struct Node {
    std::string title;
    std::optional<std::string> type;
    std::vector<nlohmann::json> values;  // "enum"; empty: any
    std::vector<Index> alternatives;     // "anyOf"; empty: none needed
    std::map<std::string, Index> properties;
    std::vector<std::string> required;
    std::map<std::string, std::vector<std::string>> dependentRequired;
    bool closed = false;          // no other properties
    std::optional<Index> others;  // what these must be
    std::optional<Index> items;
    std::optional<Index> excluded;  // "not"
    std::optional<Pattern> pattern;
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::size_t itemsMin = 0;
    std::optional<std::size_t> itemsMax;
    std::optional<std::size_t> lengthMax;  // in characters
  };

  Index read(const nlohmann::json& text);
  Index refer(const std::string& reference);
  bool readValues(const std::string& keyword, const nlohmann::json& told, Node& node);
  bool readParts(const std::string& keyword, const nlohmann::json& told, Node& node);
  static bool readLimits(const std::string& keyword, const nlohmann::json& told, Node& node);

  bool admits(Index index, const nlohmann::json& value) const;
  bool admitsObject(const Node& node, const nlohmann::json& value) const;
  bool admitsList(const Node& node, const nlohmann::json& value) const;

  const nlohmann::json* definitions_ = nullptr;  // while it is read
  std::map<std::string, Index> known_;           // definitions that were read
  std::vector<Node> nodes_;
  Index root_ = 0;
};

}  // namespace soak
