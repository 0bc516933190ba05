#include "tests/fuzz/mac_socket.h"

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <vector>

#include "base/numbers.h"
#include "platform/call.h"
#include "platform/simulated/frames.h"
#include "platform/simulated/socket_address.h"
#include "simulator/companion/descriptor.h"
#include "simulator/companion/server.h"
#include "simulator/companion/socket.h"
#include "simulator/text/parse.h"

namespace fuzz {

using companion::Descriptor;
using driver::Datum;
using nlohmann::json;

namespace {

constexpr const char* servedWorld = R"(
user "Ada" login ada
app Notes pid 41
    window 7 "Inbox" at 60,80 size 300x200
        AXTextField "Search" at 80,124 size 200x26 value "tea" focused
        AXButton "Send" at 80,160 size 80x26 press: append "!" to Search
app Browser pid 40 frontmost
    window 5 "News" at 400,80 size 300x200 focused
at 100ms user key a
)";

/// Fewer than wait to be taken by one that takes none.
constexpr std::size_t connectionsMax = 300;
constexpr std::size_t passersMax = 5000;

/// So often the Mac has its turn after each act: all that is there is read, and answered.
constexpr int turnsOfAct = 3;

Datum datumOf(const json& value) {
  if (value.is_boolean()) return Datum(value.get<bool>());
  if (value.is_number_float()) return Datum(value.get<double>());
  if (value.is_number()) return Datum(value.get<std::int64_t>());
  if (value.is_array()) {
    Datum::List list;
    for (const json& each : value) list.push_back(datumOf(each));
    return Datum(std::move(list));
  }
  if (!value.is_string()) return Datum();
  const auto text = value.get<std::string>();
  const auto& names = platform::functionNames;
  const auto* const found = std::find_if(names.begin(), names.end(), [&](const auto& each) {
    return "@" + std::string(each) == text;
  });
  if (found != names.end()) return Datum(static_cast<std::int64_t>(found - names.begin()));
  return Datum(text);
}

std::optional<unsigned> digitOf(char c) {
  const std::string_view digits = "0123456789abcdef";
  const std::size_t value = digits.find(c);
  return value == std::string_view::npos ? std::nullopt
                                         : std::optional(static_cast<unsigned>(value));
}

/// Each "\xHH" as the byte it means.
std::string unescaped(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const bool isEscape = text.starts_with("\\x") && text.size() >= 4;
    const auto high = isEscape ? digitOf(text[2]) : std::nullopt;
    const auto low = isEscape ? digitOf(text[3]) : std::nullopt;
    bytes += high && low ? static_cast<char>(*high << 4U | *low) : text[0];
    text.remove_prefix(high && low ? 4 : 1);
  }
  return bytes;
}

/// A simulated Mac in this process, and those who talk to it.
class Served {
 public:
  Served()
      : wakes_(eventfd(1, EFD_CLOEXEC | EFD_NONBLOCK)),
        listens_(companion::privateSocketName()),
        server_(simulator::parseWorld(servedWorld),
                {companion::Scheduler::Time::virtualTime, listens_.descriptor(), "world"}) {}

  /// A line of the input.
  void act(const std::string& line) {
    const char name = line[0];
    const std::string rest = line.size() < 2 ? "" : line.substr(2);
    if (rest.empty() || rest[0] == '-') {
      connections_.erase(name);
    } else if (rest[0] == '+') {
      connectSilently(driver::parseInt64(rest.substr(1)).value_or(1));
    } else if (rest[0] == '*') {
      comeAndGo(driver::parseInt64(rest.substr(1)).value_or(1));
    } else {
      send(name, rest);
    }
    takeTurns();
  }

  /// All have gone; whoever comes now is served.
  std::string complaintOfNext() {
    connections_.clear();
    silent_.clear();
    takeTurns();
    const int next = connection('n');
    write(next, simulated::frameOf(datumOf(json{"driver", {"driver", "session"}, json::array()})));
    std::string told = read(next);
    for (int turn = 0; turn < turnsOfAct && told.empty(); ++turn) {
      server_.turn(own_);
      told += read(next);
    }
    const auto answer = simulated::takeFrame(told);
    const bool isServed = answer && std::holds_alternative<std::int64_t>(answer->data);
    return isServed ? "" : "who comes next is not served";
  }

 private:
  int connection(char name) {
    auto& found = connections_[name];
    if (found.number() < 0) found = connect();
    return found.number();
  }

  Descriptor connect() {
    const std::size_t count = connections_.size() + silent_.size();
    if (count > connectionsMax) return {};
    Descriptor made(simulated::connectToSocket(listens_.name()));
    if (made.number() >= 0) fcntl(made.number(), F_SETFL, O_NONBLOCK);
    server_.turn(own_);
    return made;
  }

  void connectSilently(std::int64_t count) {
    for (std::int64_t i = 0; i < count && silent_.size() < connectionsMax; ++i) {
      silent_.push_back(connect());
    }
  }

  void comeAndGo(std::int64_t count) {
    for (std::int64_t i = 0; i < count && passers_ < passersMax; ++i, ++passers_) connect();
    server_.turn(own_);
  }

  void send(char name, const std::string& said) {
    const int to = connection(name);
    if (said[0] == '=') return write(to, unescaped(std::string_view(said).substr(1)));
    const bool isLate = said[0] == '~';
    const json value = json::parse(said.substr(isLate ? 1 : 0), nullptr, false);
    if (value.is_discarded()) return write(to, unescaped(said));
    std::string frame = simulated::frameOf(datumOf(value));
    if (isLate) {
      write(to, frame.substr(0, frame.size() - 1));
      takeTurns();
      frame.erase(0, frame.size() - 1);
    }
    write(to, frame);
  }

  /// What it does not take now is lost.
  static void write(int descriptor, const std::string& bytes) {
    if (descriptor < 0) return;
    const auto sent = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    static_cast<void>(sent);
  }

  static std::string read(int descriptor) {
    std::string bytes;
    std::array<char, 65536> part{};
    for (ssize_t count = 1; count > 0 && descriptor >= 0;) {
      count = recv(descriptor, part.data(), part.size(), MSG_DONTWAIT);
      if (count > 0) bytes.append(part.data(), static_cast<std::size_t>(count));
    }
    return bytes;
  }

  void takeTurns() {
    for (int turn = 0; turn < turnsOfAct; ++turn) {
      server_.turn(own_);
      for (const auto& [name, descriptor] : connections_) read(descriptor.number());
    }
  }

  Descriptor wakes_;  // always readable, so that nobody waits
  companion::ListeningSocket listens_;
  companion::Server server_;
  std::vector<pollfd> own_ = {{wakes_.number(), POLLIN, 0}};
  std::map<char, Descriptor> connections_;
  std::vector<Descriptor> silent_;
  std::size_t passers_ = 0;
};

}  // namespace

std::string complaintAboutSocket(const std::string& input) {
  Served mac;
  std::istringstream lines(input);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty()) mac.act(line);
  }
  return mac.complaintOfNext();
}

}  // namespace fuzz
