#include "simulator/companion/client.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/simulated/frames.h"
#include "platform/simulated/socket_address.h"
#include "simulator/companion/descriptor.h"
#include "simulator/companion/failure.h"

namespace companion {

namespace {

using driver::Datum;

struct Answer {
  bool ok = false;
  std::vector<std::string> lines;
};

std::string macFromEnvironment() {
  const char* name = std::getenv("SIMULATED_MAC");
  if (name != nullptr && *name != '\0') return name;
  throw Failure(
      "no simulated Mac to control: set SIMULATED_MAC to the socket that \"simulated-mac serve "
      "WORLD\" prints");
}

Answer ask(const std::vector<std::string>& words) {
  const std::string mac = macFromEnvironment();
  const Descriptor socket(simulated::connectToSocket(mac));
  if (socket.number() < 0) throw Failure("no simulated Mac at " + mac);
  Datum::List message = {driver::pack("control")};
  for (const std::string& word : words) message.push_back(driver::pack(word));
  simulated::writeFrame(socket.number(), Datum(std::move(message)));
  const auto reply = simulated::readFrame(socket.number());
  if (!reply) throw Failure("the simulated Mac at " + mac + " has gone");
  const auto parts = driver::unpack<Datum::List>(*reply);
  return {driver::unpack<bool>(parts.at(0)), driver::unpack<std::vector<std::string>>(parts.at(1))};
}

int print(const Answer& answer) {
  for (const std::string& line : answer.lines) std::cout << line << "\n";
  std::cout.flush();
  return answer.ok ? 0 : 1;
}

void writeFile(const std::string& path, const std::string& contents) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << contents;
  file.close();
  if (!file) throw systemFailure("cannot write " + path);
}

}  // namespace

int controlCommand(const std::vector<std::string>& words) { return print(ask(words)); }

int screenshotCommand(const std::vector<std::string>& words) {
  const Answer answer = ask({words[0]});
  if (!answer.ok) return print(answer);
  writeFile(words[1], answer.lines.at(0));
  const nlohmann::json reply{{"ok", true}, {"path", words[1]}};
  std::cout << reply.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
  return 0;
}

}  // namespace companion
