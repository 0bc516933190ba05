#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/types.h"

/// This process, other processes, and the user it runs for.
namespace process {

/// The value of an environment variable, read afresh; none when it is unset. Bytes as given.
std::optional<std::string> environment(const char* name);

platform::Pid ownPid();

/// Sends the null signal. True when the platform accepted it: the process exists and may be
/// signalled. Negative ids and 0 have the platform's meaning.
bool acceptsNullSignal(platform::Pid pid);

/// Ends the process at once with this exit status, after the handlers of `onExit`. Of several flows
/// that call it, the first ends the process and the others stop here. No frame of the caller is
/// unwound on a real machine; callers undo what they must beforehand.
[[noreturn]] void exit(int status);

/// Has `handler` run once when the process ends by `exit`, on the flow that called it.
void onExit(std::function<void()> handler);

enum class Signal { hangUp = 1, interrupt = 2, terminate = 15 };

/// From now on none of these signals ends the process; `handler` is called for each that comes, on
/// the main flow. Signals that come in quick succession may be taken for one.
void handleSignals(std::span<const Signal> signals, std::function<void(Signal)> handler);

/// True when this signal was ignored when the process started, and is still.
bool isIgnored(Signal signal);

/// Has `handler` called once, on a flow of its own and whatever the others do, when the first of
/// these signals comes. The next one ends the process at once. To be called before flows are
/// started.
void onEndingSignal(const std::vector<Signal>& signals, std::function<void(Signal)> handler);

/// Ends the process by this signal, as if it had never been handled. Exit handlers do not run.
[[noreturn]] void dieBySignal(Signal signal);

/// From now on a write to a pipe without a reader fails instead of ending the process.
void ignoreBrokenPipes();

/// From now on neither a terminal nor a stop signal that can be refused stops the process. A read
/// from a terminal that would have stopped it fails.
void ignoreStops();

/// Has `lastAct` run when the process meets a fault of its own (a bad access, an abort …) or gets a
/// signal that is there to end it and is none of `Signal`, on a stack set aside for it, before it
/// dies by that signal. It may find any state broken.
void onFatalSignal(void (*lastAct)());

/// The full name of the user, untrimmed; empty when there is none.
std::string fullUserName();

/// The short (login) name of the user.
std::string loginName();

/// The given name that the platform's person-name parser finds in `fullName`; none when it cannot
/// parse it.
std::optional<std::string> givenName(const std::string& fullName);

/// The user's languages as BCP 47 tags, the preferred one first.
std::vector<std::string> preferredLanguages();

struct Version {
  int major = 0;
  int minor = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer.
  friend auto operator<=>(const Version&, const Version&) = default;
};

Version operatingSystemVersion();

/// The absolute path of the current directory; empty when there is none.
std::string currentDirectory();

/// Runs a program, without the user seeing it, and gives all that it writes to standard output
/// once it has ended, whatever its status. Its standard error is discarded. None when it cannot be
/// started.
std::optional<platform::Bytes> toolOutput(const std::string& path,
                                          const std::vector<std::string>& arguments);

}  // namespace process
