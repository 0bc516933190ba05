#include "main/replies.h"

#include <mutex>
#include <optional>
#include <utility>

#include "base/utf8.h"
#include "main/ending.h"
#include "main/globals.h"
#include "platform/json.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/streams.h"

namespace driver {

namespace {

constexpr std::uint64_t nanosecondsPerMicrosecond = 1'000;

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

/// The reply, and what has become of the user's clipboard when that is not as it should be: whoever
/// ends the run, and for whatever reason.
Reply complete(Reply reply) {
  if (globals().copyLost) reply["copyLost"] = true;
  if (globals().clipboardNotRestored) reply["clipboardRestored"] = false;
  return reply;
}

std::string lineOf(const Reply& reply) { return json::write(repaired(complete(reply))); }

void noteReplied() {
  const std::lock_guard lock(globals().mutex);
  globals().replied = true;
}

enum class Line { oneOfSeveral, last };

// The last line keeps the right to write, so that nothing can follow it.
bool write(const Reply& reply, Line line) {
  const bool shared = globals().sharesOutput;
  // The one line of a run comes whole, or not at all once the process is ending.
  std::optional<Act> act;
  if (!shared) {
    act.emplace();
    noteReplied();
  }
  const std::string text = lineOf(reply);
  if (shared) streams::acquireOutput();
  // A line that could not be written whole is not ended either.
  const bool written = streams::writeOutput(text) && streams::writeOutput("\n");
  if (shared && line != Line::last) streams::releaseOutput();
  return written;
}

}  // namespace

InputFailure::InputFailure(std::string message)
    : message_(std::move(message)), description_("InputFailure(message: \"" + message_ + "\")") {}

Value::Object geometryOf(const Rect& rect) {
  return {{"x", rect.x}, {"y", rect.y}, {"width", rect.width}, {"height", rect.height}};
}

Reply refusal(std::string error) { return {{"ok", false}, {"error", std::move(error)}}; }

Reply lockedRefusal(std::string error) {
  return {{"ok", false}, {"locked", true}, {"error", std::move(error)}};
}

bool emit(const Reply& reply) {
  if (!isSuccess(reply) || !globals().droppedWhileLocked) return write(reply, Line::oneOfSeveral);
  failWithheld();
}

bool emitWithin(const Reply& reply, std::uint32_t microseconds) {
  return streams::writeOutputWithin(lineOf(reply) + "\n", microseconds);
}

void failWithheld() {
  write(lockedRefusal("the screen locked; input was withheld from the lock screen"), Line::last);
  process::exit(1);
}

void fail(const std::string& message) {
  // Before the line: whoever reads it may act at once, and must find focus and clipboard restored.
  runPendingUndos();
  write(refusal(message), Line::last);
  process::exit(1);
}

void emitLastWithin(const Reply& reply, std::uint32_t microseconds) {
  // The reader that holds up the line under way is the one of this line: they share the time.
  const std::uint64_t start = loop::uptimeNanoseconds();
  if (!streams::acquireOutputWithin(microseconds)) return;
  const std::uint64_t waited = (loop::uptimeNanoseconds() - start) / nanosecondsPerMicrosecond;
  if (waited >= microseconds) return;
  emitWithin(reply, microseconds - static_cast<std::uint32_t>(waited));
}

void endOutput() {
  if (globals().sharesOutput) streams::acquireOutput();
}

}  // namespace driver
