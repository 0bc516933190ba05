#include "capture/service.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "capture/background_capture_indicator.h"
#include "capture/commands.h"
#include "capture/service_request.h"
#include "input/context.h"
#include "input/focus.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/told_to_end.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/streams.h"

namespace driver {

namespace {

/// What a session was opened for.
struct SessionScope {
  std::string app;                   // as the client wrote it
  std::optional<std::string> scope;  // lower-cased
};

[[noreturn]] void failSharing(const std::string& description) {
  fail("native screen sharing unavailable: " + description);
}

/// A reply that nobody takes is an end: the client knows nothing of what happens here any more.
void answer(const Reply& reply) {
  if (!emit(reply)) process::exit(1);
}

class CaptureService {
 public:
  [[noreturn]] void serve() {
    answer({{"ok", true}, {"pid", process::ownPid()}});
    while (const std::optional<platform::Bytes> line = streams::readLine()) {
      loop::doRound([&] { serve(*line); });
    }
    for (auto& [session, indicator] : indicators_) indicator.stop();
    endOutput();
    process::exit(0);
  }

 private:
  void serve(const std::string& line) {
    // A run gives a hung application up; a service lives on, and it may have recovered.
    globals().messageTimeOuts.clear();
    try {
      const std::optional<ServiceRequest> request = parseServiceRequest(line);
      if (!request) fail("invalid capture service request");
      serve(*request);
    } catch (const InputFailure& failure) {
      failSharing(failure.description());
    } catch (const platform::PlatformError& error) {
      failSharing(error.what());
    }
  }

  void serve(const ServiceRequest& request) {
    if (request.op == "open") open(request);
    const auto indicator = indicators_.find(request.session);
    const auto scope = sessionScopes_.find(request.session);
    if (indicator == indicators_.end() || scope == sessionScopes_.end()) {
      fail("unknown capture session");
    }
    // Each request anew: sessions share the one scope that the subsystems ask.
    globals().windowScope = scope->second.scope;
    if (request.op == "close") {
      indicator->second.stop();
      indicators_.erase(indicator);
      sessionScopes_.erase(scope);
      answer({{"ok", true}});
    } else if (request.op == "command") {
      answer({{"ok", true}, {"reply", command(request, scope->second.app, indicator->second)}});
    } else {
      Reply reply = indicator->second.refresh();
      reply["pid"] = process::ownPid();
      answer(reply);
    }
  }

  void open(const ServiceRequest& request) {
    const std::optional<std::string> app = appOf(request);
    if (!app || indicators_.contains(request.session)) fail("invalid capture session");
    const std::optional<std::string> scope = scopeOf(request);
    globals().windowScope = scope;
    indicators_.try_emplace(request.session, *app);
    sessionScopes_[request.session] = {*app, scope};
  }

  /// The command acts on the process that is shared, whatever runs under the same name by now.
  Reply command(const ServiceRequest& request, const std::string& app,
                BackgroundCaptureIndicator& indicator) const {
    std::optional<SharedCommand> shared = sharedCommandOf(request, app);
    if (!shared) fail("invalid shared capture command");
    const CaptureCommand& row = *shared->command;
    Arguments& arguments = shared->words;
    arguments.insert(arguments.begin(), globals().args.front());
    arguments[2] = "pid:" + std::to_string(indicator.targetPID());
    checkInputContext(row.actsOnInput, arguments);
    if (row.inSession == InSession::holdsFocus) return indicator.holdFocus();
    return captureCommand(row, arguments);
  }

  std::map<std::string, BackgroundCaptureIndicator> indicators_;  // by session
  std::map<std::string, SessionScope> sessionScopes_;             // by session
};

[[noreturn]] void endBySignal(process::Signal signal) {
  beginEnding();
  releaseAllInputFocus();
  // A line that is being written is finished first, where its reader lets it.
  streams::acquireOutputWithin(endingMicroseconds);
  process::dieBySignal(signal);
}

}  // namespace

void captureServiceCommand(const Arguments& arguments) {
  process::ignoreBrokenPipes();
  // A lock file of the repaired name would be another one.
  if (globals().repairedArgs.contains(2) || !streams::lockFile(arguments[2])) {
    fail("capture service already running");
  }
  // Whatever ends the process, by `fail` too: the focus that it holds must not stay behind.
  process::onExit(releaseAllInputFocus);
  process::handleSignals(endingSignals(), endBySignal);
  globals().sharesOutput = true;
  loop::startTask([] { CaptureService().serve(); });
  loop::park();
}

}  // namespace driver
