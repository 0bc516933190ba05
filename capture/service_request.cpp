#include "capture/service_request.h"

#include <algorithm>

#include "base/utf8.h"
#include "capture/commands.h"
#include "platform/json.h"
#include "platform/text.h"

namespace driver {

namespace {

std::optional<std::string> textIn(const Value::Object& entries, const char* key) {
  const auto entry = entries.find(key);
  if (entry == entries.end()) return std::nullopt;
  const auto* text = entry->second.get<std::string>();
  return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<Arguments> textsIn(const Value::Object& entries, const char* key) {
  const auto entry = entries.find(key);
  return entry == entries.end() ? std::nullopt : textsIn(entry->second);
}

bool mayBeShared(const std::string& command) {
  const bool isKnown = std::any_of(captureCommands.begin(), captureCommands.end(),
                                   [&](const CommandForm& form) { return form.name == command; });
  return isKnown && command != "capture-probe";
}

}  // namespace

std::optional<ServiceRequest> parseServiceRequest(std::string_view line) {
  if (!isUtf8(line)) return std::nullopt;
  const Value value = json::parseOrThrow(line);
  const auto* entries = value.get<Value::Object>();
  if (entries == nullptr) return std::nullopt;
  const std::optional<std::string> op = textIn(*entries, "op");
  const std::optional<std::string> session = textIn(*entries, "session");
  if (!op || !session) return std::nullopt;
  return ServiceRequest{*op, *session, *entries};
}

std::optional<std::string> appOf(const ServiceRequest& request) {
  return textIn(request.entries, "app");
}

std::optional<std::string> scopeOf(const ServiceRequest& request) {
  const std::optional<std::string> window = textIn(request.entries, "window");
  if (!window || window->empty()) return std::nullopt;
  return text::lowercase(*window);
}

std::optional<Arguments> sharedCommandOf(const ServiceRequest& request, const std::string& app) {
  std::optional<Arguments> arguments = textsIn(request.entries, "args");
  const bool isMeant =
      arguments && arguments->size() >= 2 && (*arguments)[1] == app && mayBeShared((*arguments)[0]);
  return isMeant ? arguments : std::nullopt;
}

}  // namespace driver
