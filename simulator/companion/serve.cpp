#include "simulator/companion/serve.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <iostream>

#include "simulator/companion/failure.h"
#include "simulator/companion/options.h"
#include "simulator/companion/server.h"
#include "simulator/companion/signals.h"
#include "simulator/companion/socket.h"

namespace companion {

namespace {

/// Nothing more is printed, so whoever reads the output to its end need not wait for the Mac's.
void printOnly(const std::string& line) {
  std::cout << line << std::endl;
  if (!std::cout) throw Failure("the socket's name could not be printed");
  const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (nowhere.number() >= 0) dup2(nowhere.number(), STDOUT_FILENO);
}

/// True once all writers of standard input have gone. What they write is of no interest.
bool inputClosed() {
  std::array<char, 4096> ignored;
  return read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0;
}

}  // namespace

int serveCommand(const std::vector<std::string>& words) {
  const Options options = serveOptions(words);
  signal(SIGPIPE, SIG_IGN);
  const Signals signals({SIGTERM, SIGINT, SIGHUP});
  simulator::World world = readWorld(options.world);
  const ListeningSocket socket(options.socket.empty() ? privateSocketName() : options.socket);
  Server server(std::move(world), options.time, socket.descriptor());
  printOnly(socket.name());

  std::vector<pollfd> own = {{signals.descriptor(), POLLIN, 0}};
  if (options.untilClosed) own.push_back({STDIN_FILENO, POLLIN, 0});
  while (true) {
    server.turn(own);
    if (own[0].revents != 0) return 0;
    if (options.untilClosed && own[1].revents != 0 && inputClosed()) return 0;
  }
}

}  // namespace companion
