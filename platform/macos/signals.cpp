#include <dispatch/dispatch.h>
#include <signal.h>

#include <memory>
#include <utility>

#include "platform/macos/same_numbers.h"
#include "platform/process.h"

namespace process {

namespace {

using macos::sameNumber;
using Handler = std::function<void(Signal)>;

static_assert(sameNumber(Signal::hangUp, SIGHUP));
static_assert(sameNumber(Signal::interrupt, SIGINT));
static_assert(sameNumber(Signal::terminate, SIGTERM));

struct Watch {
  Signal signal;
  std::shared_ptr<const Handler> handler;
};

void handle(void* context) {
  const auto* watch = static_cast<const Watch*>(context);
  (*watch->handler)(watch->signal);
}

// The source watches as long as the process lives. It only observes: the signal's own action has to
// be switched off beside it.
void watch(Signal signal, std::shared_ptr<const Handler> handler) {
  const auto number = static_cast<int>(signal);
  ::signal(number, SIG_IGN);
  const dispatch_source_t source =
      dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<std::uintptr_t>(number), 0,
                             dispatch_get_main_queue());
  dispatch_set_context(source, new Watch{signal, std::move(handler)});
  dispatch_source_set_event_handler_f(source, handle);
  dispatch_activate(source);
}

}  // namespace

void handleSignals(std::span<const Signal> signals, std::function<void(Signal)> handler) {
  const auto shared = std::make_shared<const Handler>(std::move(handler));
  for (const Signal signal : signals) watch(signal, shared);
}

}  // namespace process
