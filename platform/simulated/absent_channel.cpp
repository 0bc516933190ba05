#include "platform/simulated/absent_channel.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "base/value.h"
#include "platform/json.h"
#include "platform/posix/output.h"
#include "platform/posix/process.h"

namespace simulated {

using driver::Datum;
using platform::Function;

namespace {

[[noreturn]] void failForLackOfMac() {
  failWithoutMac(
      "no simulated Mac to join: set SIMULATED_MAC to the socket that \"simulated-mac serve "
      "WORLD\" prints, or run this command under \"simulated-mac run WORLD -- COMMAND\"");
}

}  // namespace

void failWithoutMac(const std::string& message) {
  const std::string reply =
      json::write(driver::Value::Object{{"ok", false}, {"error", message}}) + "\n";
  posix::writeAll(STDOUT_FILENO, reply);
  std::_Exit(1);
}

Datum ownEnvironment(const platform::Call& call) {
  return driver::pack(
      posix::environment(driver::unpack<std::string>(call.arguments.at(0)).c_str()));
}

Datum AbsentChannel::call(platform::Call call) {
  switch (call.function) {
    case Function::environment:
      return ownEnvironment(call);
    case Function::writeOutput:
      return call.arguments.at(1);
    case Function::fullUserName:
    case Function::loginName:
      return driver::pack(std::string());
    case Function::createSource:
    case Function::loadImage:
    case Function::givenName:
      return Datum();
    default:
      failForLackOfMac();
  }
}

platform::Pid AbsentChannel::ownPid() const { failForLackOfMac(); }

void AbsentChannel::startFlow(std::function<void()> /*body*/) { failForLackOfMac(); }

void AbsentChannel::dieBySignal(int signal) { posix::dieBySignal(signal); }

void AbsentChannel::exit(int status) { std::exit(status); }

}  // namespace simulated
