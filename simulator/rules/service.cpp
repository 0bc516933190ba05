#include "simulator/rules/service.h"

#include <algorithm>
#include <string_view>

#include "simulator/rules/replies.h"

namespace simulator {

bool ServiceRules::concernsUs() const {
  return client_.arguments.size() > 1 && client_.arguments[1] == "capture-service";
}

void ServiceRules::post(Violations& violations) {
  if (interrupted_ && ++postsAfter_ > 1) {
    violations.push_back("I2: two operations after the service had to end");
  }
}

void ServiceRules::finish(Violations& violations) const {
  for (const std::string& fault : endingFaults(client_)) violations.push_back("I7: " + fault);
}

std::vector<std::string> endingFaults(const Client& client) {
  std::vector<std::string> faults;
  bool refused = false;  // by the latest line
  std::string_view rest = client.output;
  while (!rest.empty()) {
    if (refused) faults.emplace_back("a line follows the last one");
    const std::size_t length = std::min(rest.find('\n'), rest.size() - 1) + 1;
    const ReplyFacts reply = readReply(std::string(rest.substr(0, length)));
    refused = reply.faults.empty() && !reply.ok;
    if (refused && !reply.saysWhy) faults.emplace_back("a failure without an \"error\"");
    rest.remove_prefix(length);
  }
  if (refused && client.exited && !client.diedBySignal && client.status != 1) {
    faults.emplace_back("the last line is a failure, the status is not");
  }
  return faults;
}

}  // namespace simulator
