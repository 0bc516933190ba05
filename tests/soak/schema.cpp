#include "tests/soak/schema.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace soak {

using nlohmann::json;

namespace {

/// What says nothing of a value.
bool isAnnotation(const std::string& keyword) {
  return keyword == "$schema" || keyword == "$id" || keyword == "title" ||
         keyword == "description" || keyword == "$defs" || keyword == "$comment";
}

[[noreturn]] void refuse(const std::string& what) {
  throw std::runtime_error("the schema has what is not known: " + what);
}

/// The pieces between "[\s\S]*", each without its backslashes; between "^" and "$".
std::vector<std::string> literalPieces(std::string_view pattern) {
  constexpr std::string_view anything = "[\\s\\S]*";
  if (!pattern.starts_with('^') || !pattern.ends_with('$')) refuse(std::string(pattern));
  pattern = pattern.substr(1, pattern.size() - 2);
  std::vector<std::string> pieces(1);
  while (!pattern.empty()) {
    if (pattern.starts_with(anything)) {
      pattern.remove_prefix(anything.size());
      pieces.emplace_back();
      continue;
    }
    const bool isEscaped = pattern.front() == '\\' && pattern.size() > 1;
    if (isEscaped) pattern.remove_prefix(1);
    const bool isPlain = std::string_view("[](){}*+?|^$.").find(pattern.front()) == pattern.npos;
    if (!isEscaped && !isPlain) refuse("a pattern with " + std::string(pattern));
    pieces.back() += pattern.front();
    pattern.remove_prefix(1);
  }
  return pieces;
}

/// Whether a text is these pieces, with anything between them.
bool fits(const std::vector<std::string>& pieces, std::string_view text) {
  if (pieces.size() == 1) return text == pieces.front();
  if (!text.starts_with(pieces.front())) return false;
  text.remove_prefix(pieces.front().size());
  for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
    const std::size_t found = text.find(pieces[i]);
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + pieces[i].size());
  }
  return text.ends_with(pieces.back());
}

bool isOfType(const std::string& type, const json& value) {
  if (type == "integer") return value.is_number_integer();
  if (type == "number") return value.is_number();
  if (type == "string") return value.is_string();
  if (type == "boolean") return value.is_boolean();
  if (type == "object") return value.is_object();
  if (type == "array") return value.is_array();
  return value.is_null();
}

bool isType(const std::string& type) {
  constexpr std::array types = {"integer", "number", "string", "boolean",
                                "object",  "array",  "null"};
  return std::find(types.begin(), types.end(), type) != types.end();
}

std::size_t charactersOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

}  // namespace

Schema::Schema(const json& text) {
  if (const auto found = text.find("$defs"); found != text.end()) definitions_ = &*found;
  root_ = read(text);
  definitions_ = nullptr;
}

Schema::Index Schema::refer(const std::string& reference) {
  constexpr std::string_view prefix = "#/$defs/";
  if (!reference.starts_with(prefix) || definitions_ == nullptr) refuse(reference);
  const std::string name = reference.substr(prefix.size());
  if (const auto known = known_.find(name); known != known_.end()) return known->second;
  return known_[name] = read(definitions_->at(name));
}

bool Schema::readValues(const std::string& keyword, const json& told, Node& node) {
  if (keyword == "type") {
    node.type = told.get<std::string>();
    if (!isType(*node.type)) refuse(*node.type);
  } else if (keyword == "enum") {
    node.values = told.get<std::vector<json>>();
  } else if (keyword == "const") {
    node.values = {told};
  } else if (keyword == "pattern") {
    node.pattern = literalPieces(told.get<std::string>());
  } else {
    return false;
  }
  return true;
}

bool Schema::readLimits(const std::string& keyword, const json& told, Node& node) {
  if (keyword == "minimum") {
    node.minimum = told.get<double>();
  } else if (keyword == "maximum") {
    node.maximum = told.get<double>();
  } else if (keyword == "minItems") {
    node.itemsMin = told.get<std::size_t>();
  } else if (keyword == "maxItems") {
    node.itemsMax = told.get<std::size_t>();
  } else if (keyword == "maxLength") {
    node.lengthMax = told.get<std::size_t>();
  } else {
    return false;
  }
  return true;
}

bool Schema::readParts(const std::string& keyword, const json& told, Node& node) {
  if (keyword == "properties") {
    for (const auto& [name, part] : told.items()) node.properties[name] = read(part);
  } else if (keyword == "required") {
    node.required = told.get<std::vector<std::string>>();
  } else if (keyword == "dependentRequired") {
    node.dependentRequired = told.get<std::map<std::string, std::vector<std::string>>>();
  } else if (keyword == "additionalProperties") {
    if (told.is_object()) {
      node.others = read(told);
    } else {
      node.closed = !told.get<bool>();
    }
  } else if (keyword == "items") {
    node.items = read(told);
  } else if (keyword == "not") {
    node.excluded = read(told);
  } else if (keyword == "anyOf") {
    for (const json& part : told) node.alternatives.push_back(read(part));
  } else {
    return false;
  }
  return true;
}

Schema::Index Schema::read(const json& text) {
  if (const auto reference = text.find("$ref"); reference != text.end()) {
    const auto isMore = [](const auto& item) {
      return item.key() != "$ref" && !isAnnotation(item.key());
    };
    for (const auto& item : text.items()) {
      if (isMore(item)) refuse("$ref with " + item.key());
    }
    return refer(reference->get<std::string>());
  }
  Node node;
  node.title = text.value("title", "");
  for (const auto& [keyword, told] : text.items()) {
    if (isAnnotation(keyword)) continue;
    const bool isKnown = readValues(keyword, told, node) || readParts(keyword, told, node) ||
                         readLimits(keyword, told, node);
    if (!isKnown) refuse(keyword);
  }
  nodes_.push_back(std::move(node));
  return nodes_.size() - 1;
}

const std::string& Schema::alternativeOf(const json& value) const {
  static const std::string none;
  const auto& all = nodes_[root_].alternatives;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](Index each) { return admits(each, value); });
  return found == all.end() ? none : nodes_[*found].title;
}

std::vector<std::string> Schema::alternatives() const {
  std::vector<std::string> titles;
  for (const Index each : nodes_[root_].alternatives) titles.push_back(nodes_[each].title);
  return titles;
}

bool Schema::admits(Index index, const json& value) const {
  const Node& node = nodes_[index];
  const auto& values = node.values;
  if (node.type && !isOfType(*node.type, value)) return false;
  if (!values.empty() && std::find(values.begin(), values.end(), value) == values.end()) {
    return false;
  }
  if (value.is_object() && !admitsObject(node, value)) return false;
  if (value.is_array() && !admitsList(node, value)) return false;
  if (value.is_number()) {
    if (node.minimum && value.get<double>() < *node.minimum) return false;
    if (node.maximum && value.get<double>() > *node.maximum) return false;
  }
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    if (node.pattern && !fits(*node.pattern, text)) return false;
    if (node.lengthMax && charactersOf(text) > *node.lengthMax) return false;
  }
  if (node.excluded && admits(*node.excluded, value)) return false;
  const auto& alternatives = node.alternatives;
  return alternatives.empty() || std::any_of(alternatives.begin(), alternatives.end(),
                                             [&](Index each) { return admits(each, value); });
}

bool Schema::admitsObject(const Node& node, const json& value) const {
  const auto hasAll = [&](const std::vector<std::string>& names) {
    return std::all_of(names.begin(), names.end(),
                       [&](const std::string& name) { return value.contains(name); });
  };
  if (!hasAll(node.required)) return false;
  for (const auto& [name, names] : node.dependentRequired) {
    if (value.contains(name) && !hasAll(names)) return false;
  }
  for (const auto& [name, part] : value.items()) {
    const auto property = node.properties.find(name);
    if (property == node.properties.end()) {
      if (node.closed || (node.others && !admits(*node.others, part))) return false;
    } else if (!admits(property->second, part)) {
      return false;
    }
  }
  return true;
}

bool Schema::admitsList(const Node& node, const json& value) const {
  if (value.size() < node.itemsMin) return false;
  if (node.itemsMax && value.size() > *node.itemsMax) return false;
  return !node.items || std::all_of(value.begin(), value.end(),
                                    [&](const json& each) { return admits(*node.items, each); });
}

}  // namespace soak
