#include "platform/macos/standins/dispatch.h"

#include <dispatch/dispatch.h>

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "platform/macos/standins/objects.h"

struct dispatch_queue_s {};

struct dispatch_source_type_s {};

struct dispatch_source_s {
  dispatch_source_type_t type = nullptr;
  std::uintptr_t handle = 0;
  void* context = nullptr;
  dispatch_function_t handler = nullptr;
  dispatch_function_t finalizer = nullptr;
  bool isActive = false;
  bool isCancelled = false;
  int references = 1;
  std::uint64_t next = 0;  // of a timer
  std::uint64_t interval = 0;
  std::uintptr_t pending = 0;
  std::uintptr_t data = 0;
};

namespace standins {

namespace {

using Source = dispatch_source_s;

struct Posted {
  dispatch_function_t work;
  void* context;
};

struct Dispatch {
  std::atomic<std::uint64_t> now = 1;
  std::vector<Posted> posted;
  std::vector<std::unique_ptr<Source>> sources;
};

// Never destroyed: some sources are watched as long as the process lives.
Dispatch& dispatch() {
  static auto& dispatch = *new Dispatch;
  return dispatch;
}

bool isWatching(const Source& source) { return source.isActive && !source.isCancelled; }

void countFirings(Source& source) {
  const bool isTimer = source.type == DISPATCH_SOURCE_TYPE_TIMER && source.interval > 0;
  if (!isTimer || !isWatching(source)) return;
  for (; source.next <= dispatch().now; source.next += source.interval) ++source.pending;
}

void serve(Source& source) {
  countFirings(source);
  source.data = std::exchange(source.pending, 0);
  if (source.data > 0 && isWatching(source)) source.handler(source.context);
}

void disposeOfReleased() {
  std::erase_if(dispatch().sources, [](const std::unique_ptr<Source>& source) {
    if (source->references > 0) return false;
    if (source->finalizer != nullptr) source->finalizer(source->context);
    return true;
  });
}

void requireMainQueue(dispatch_queue_t queue) {
  if (queue != &_dispatch_main_q) noteMistake("another queue than the main one");
}

}  // namespace

void serveMainQueue() {
  for (const auto& [work, context] : std::exchange(dispatch().posted, {})) work(context);
  for (const auto& source : dispatch().sources) serve(*source);
  disposeOfReleased();
}

void passNanoseconds(std::uint64_t nanoseconds) { dispatch().now += nanoseconds; }

std::uint64_t now() { return dispatch().now; }

void signalArrives(int number) {
  for (const auto& source : dispatch().sources) {
    const bool isItsSignal = source->type == DISPATCH_SOURCE_TYPE_SIGNAL &&
                             source->handle == static_cast<std::uintptr_t>(number);
    if (isItsSignal && isWatching(*source)) ++source->pending;
  }
}

std::size_t sources() { return dispatch().sources.size(); }

}  // namespace standins

using namespace standins;

dispatch_queue_s _dispatch_main_q;
const dispatch_source_type_s _dispatch_source_type_signal = {};
const dispatch_source_type_s _dispatch_source_type_timer = {};

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  requireMainQueue(queue);
  dispatch().posted.push_back({work, context});
}

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta) {
  const dispatch_time_t base = when == DISPATCH_TIME_NOW ? now() : when;
  return base + static_cast<std::uint64_t>(delta);
}

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle,
                                         std::uintptr_t mask, dispatch_queue_t queue) {
  requireMainQueue(queue);
  if (mask != 0) noteMistake("a source with a mask");
  auto& source = dispatch().sources.emplace_back(std::make_unique<Source>());
  source->type = type;
  source->handle = handle;
  return source.get();
}

void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler) {
  source->handler = handler;
}

void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start,
                               std::uint64_t interval, std::uint64_t leeway) {
  if (interval == 0) noteMistake("a timer without an interval");
  if (leeway != 0) noteMistake("a timer that may be late");
  source->next = start;
  source->interval = interval;
}

std::uintptr_t dispatch_source_get_data(dispatch_source_t source) { return source->data; }

void dispatch_source_cancel(dispatch_source_t source) { source->isCancelled = true; }

void dispatch_set_context(dispatch_source_t object, void* context) { object->context = context; }

void dispatch_set_finalizer_f(dispatch_source_t object, dispatch_function_t finalizer) {
  object->finalizer = finalizer;
}

void dispatch_activate(dispatch_source_t object) { object->isActive = true; }

void dispatch_release(dispatch_source_t object) {
  if (object->references-- == 0) noteMistake("a source released too often");
}
