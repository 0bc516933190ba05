#include "main/replies.h"

#include <utility>

#include "base/utf8.h"
#include "main/globals.h"
#include "main/undo.h"
#include "platform/json.h"
#include "platform/process.h"
#include "platform/streams.h"

namespace driver {

namespace {

// Replies nest a few levels at most, as the commands build them.
Value repaired(const Value& value) {
  if (const auto* text = value.get<std::string>()) return repairedUtf8(*text);
  if (const auto* list = value.get<Value::List>()) {
    Value::List items;
    items.reserve(list->size());
    for (const Value& item : *list) items.push_back(repaired(item));
    return items;
  }
  if (const auto* object = value.get<Value::Object>()) {
    Value::Object entries;
    for (const auto& [key, entry] : *object) entries.emplace(key, repaired(entry));
    return entries;
  }
  return value;
}

bool isSuccess(const Reply& reply) {
  const auto entry = reply.find("ok");
  return entry != reply.end() && entry->second == Value(true);
}

void write(const Reply& reply) {
  // A line that could not be written whole is not ended either.
  if (streams::writeOutput(json::write(repaired(reply)))) streams::writeOutput("\n");
}

}  // namespace

InputFailure::InputFailure(std::string message)
    : message_(std::move(message)), description_("InputFailure(message: \"" + message_ + "\")") {}

Reply refusal(std::string error) { return {{"ok", false}, {"error", std::move(error)}}; }

Reply lockedRefusal(std::string error) {
  return {{"ok", false}, {"locked", true}, {"error", std::move(error)}};
}

void emit(const Reply& reply) {
  if (!globals().droppedWhileLocked || !isSuccess(reply)) {
    write(reply);
    return;
  }
  write(lockedRefusal("the screen locked; input was withheld from the lock screen"));
  process::exit(1);
}

void fail(const std::string& message) {
  runPendingUndos();
  emit(refusal(message));
  process::exit(1);
}

}  // namespace driver
