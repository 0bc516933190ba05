#pragma once

#include <functional>

namespace posix {

/// Ends the process with this exit status, after the exit handlers. Of several threads that call
/// it, the first ends the process and the others stop here. From an exit handler it ends the
/// process at once.
[[noreturn]] void exit(int status);

/// Has `handler` run once when the process exits, on the thread that exits; the newest runs first.
void onExit(std::function<void()> handler);

}  // namespace posix
