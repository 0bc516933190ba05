#include "simulator/companion/client.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sstream>

#include "platform/posix/descriptors.h"
#include "platform/simulated/frames.h"
#include "platform/simulated/socket_address.h"
#include "simulator/companion/descriptor.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/companion/socket.h"
#include "simulator/mac/json_text.h"

namespace companion {

namespace {

using driver::Datum;

struct Answer {
  bool ok = false;
  std::vector<std::string> lines;
};

/// A line to a Mac, for commands to it.
class Line {
 public:
  /// Throws Failure when there is no Mac, or it is not to be had.
  explicit Line(std::string mac) : mac_(std::move(mac)), socket_(connectToMac(mac_)) {}

  Answer ask(const std::vector<std::string>& words) {
    Datum::List message = {driver::pack("control")};
    for (const std::string& word : words) message.push_back(driver::pack(word));
    simulated::writeFrame(socket_.number(), Datum(std::move(message)));
    const auto reply = simulated::readFrame(socket_.number());
    if (!reply) throw Failure("the simulated Mac at " + mac_ + " has gone");
    const auto parts = driver::unpack<Datum::List>(*reply);
    return {driver::unpack<bool>(parts.at(0)),
            driver::unpack<std::vector<std::string>>(parts.at(1))};
  }

  /// Waits until the Mac has gone.
  void awaitEnd() const { posix::readToEnd(socket_.number()); }

 private:
  std::string mac_;
  Descriptor socket_;
};

Answer ask(const std::vector<std::string>& words) { return Line(macFromEnvironment()).ask(words); }

int print(const Answer& answer) {
  for (const std::string& line : answer.lines) std::cout << line << "\n";
  std::cout.flush();
  return answer.ok ? 0 : 1;
}

/// The sockets at which Macs listen in this network namespace, as SIMULATED_MAC names them.
std::vector<std::string> listeningMacs() {
  std::set<std::string> names;
  std::istringstream sockets(readFile("/proc/net/unix"));
  for (std::string line; std::getline(sockets, line);) {
    const std::size_t begin = line.find(macSocketPrefix);
    if (begin != line.npos) names.insert(line.substr(begin));
    const std::size_t beacon = line.find(macBeaconPrefix);
    if (beacon != line.npos) names.insert(line.substr(beacon + macBeaconPrefix.size()));
  }
  return {names.begin(), names.end()};
}

}  // namespace

std::string macFromEnvironment() {
  const char* name = std::getenv("SIMULATED_MAC");
  if (name != nullptr && *name != '\0') return name;
  throw Failure(
      "no simulated Mac to control: set SIMULATED_MAC to the socket that \"simulated-mac serve "
      "WORLD\" prints");
}

Descriptor connectToMac(const std::string& mac) {
  const std::string refusal = "the simulated Mac at " + mac + " is another user's";
  Descriptor socket(simulated::connectToSocket(mac));
  if (socket.number() < 0 && errno == EACCES) throw Failure(refusal);
  if (socket.number() < 0) throw Failure("no simulated Mac at " + mac);
  if (simulated::isAnotherUsers(socket.number())) throw Failure(refusal);
  return socket;
}

int controlCommand(const std::vector<std::string>& words) { return print(ask(words)); }

int fileCommand(const std::vector<std::string>& words) {
  const Answer answer = ask({words[0]});
  if (!answer.ok) return print(answer);
  writeFile(words[1], answer.lines.at(0));
  std::cout << simulator::jsonLine({{"ok", true}, {"path", simulator::textJson(words[1])}})
            << std::endl;
  return 0;
}

int stopCommand(const std::vector<std::string>& words) {
  Line line(macFromEnvironment());
  const Answer answer = line.ask(words);
  if (answer.ok) line.awaitEnd();
  return print(answer);
}

int listCommand(const std::vector<std::string>& /*words*/) {
  for (const std::string& mac : listeningMacs()) {
    try {
      const Answer answer = Line(mac).ask({"about"});
      if (!answer.ok) continue;  // of another version
      auto about = nlohmann::json::parse(answer.lines.at(0));
      about["socket"] = simulator::textJson(mac);
      std::cout << simulator::jsonLine(about) << std::endl;
    } catch (const Failure&) {
      continue;  // another user's, or one that has just gone
    }
  }
  return 0;
}

}  // namespace companion
