#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace posix {

/// The value of an environment variable, read afresh; none when it is unset. Bytes as given.
std::optional<std::string> environment(const char* name);

/// Sends the null signal. True when the system accepted it: the process exists and may be
/// signalled.
bool acceptsNullSignal(std::int32_t pid);

std::int32_t ownPid();

/// The absolute path of the current directory; empty when there is none.
std::string currentDirectory();

/// From now on a write to a pipe without a reader fails instead of ending the process.
void ignoreBrokenPipes();

/// True when the signal is ignored.
bool isIgnored(int signal);

/// Has `handler` called once, on a thread of its own, with the first of these signals that comes;
/// from then on they do what they do by default. To be called before there are other threads: a
/// thread that was started before gets them all the same. Without a thread they stay as they are.
void onEndingSignal(const std::vector<int>& signals, std::function<void(int)> handler);

/// Ends the process by this signal, whose default action is to end it, however the signal was
/// handled, ignored or held back before. Exit handlers do not run.
[[noreturn]] void dieBySignal(int signal);

/// From now on neither a terminal nor a stop signal that can be refused stops the process.
void ignoreStops();

/// Has `lastAct` run once when the process meets a fault of its own (a bad access, an abort …) or
/// gets a signal that is there to end it, before it dies by that signal. Excepted are SIGKILL,
/// which nobody can catch, and SIGHUP, SIGINT, SIGTERM and SIGPIPE, whose handling is left as it
/// is. The calling thread meets it on a stack set aside, so that even a full stack is met; any
/// other thread on its own. A fault within the last act ends the process at once, a last act that
/// hangs ends it two seconds later, and other threads that meet a fatal signal meanwhile wait for
/// the end.
void onFatalSignal(void (*lastAct)());

/// Ends the process with this exit status, after the exit handlers. Of several threads that call
/// it, the first ends the process and the others stop here. From an exit handler it ends the
/// process at once.
[[noreturn]] void exit(int status);

/// Has `handler` run once when the process exits, on the thread that exits; the newest runs first.
void onExit(std::function<void()> handler);

}  // namespace posix
