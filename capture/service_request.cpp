#include "capture/service_request.h"

#include <algorithm>
#include <utility>

#include "base/utf8.h"
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

/// The command that sessions know by this name; null when there is none.
const CaptureCommand* sharedCommandNamed(std::string_view name) {
  const auto* const command =
      std::find_if(captureCommands.begin(), captureCommands.end(),
                   [&](const CaptureCommand& each) { return each.form.name == name; });
  const bool isShared =
      command != captureCommands.end() && command->inSession != InSession::refused;
  return isShared ? command : nullptr;
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

std::optional<SharedCommand> sharedCommandOf(const ServiceRequest& request,
                                             const std::string& app) {
  std::optional<Arguments> words = textsIn(request.entries, "args");
  if (!words || words->size() < 2 || (*words)[1] != app) return std::nullopt;
  const CaptureCommand* const command = sharedCommandNamed(words->front());
  if (command == nullptr) return std::nullopt;
  return SharedCommand{command, std::move(*words)};
}

}  // namespace driver
