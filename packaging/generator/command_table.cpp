#include <algorithm>
#include <array>
#include <iostream>
#include <string>

#include "base/value.h"
#include "capture/commands.h"
#include "main/dispatcher.h"
#include "platform/json.h"

/// Prints the table of commands as the driver has it, a JSON object for each on a line of its own.
/// What is published of the commands is made from it; it is not installed.
namespace {

using driver::ActsOnInput;
using driver::CommandForm;
using driver::InSession;
using driver::Value;

const char* wordOf(ActsOnInput acts) {
  constexpr std::array<const char*, 3> words = {"no", "yes", "in_background"};
  return words[static_cast<std::size_t>(acts)];
}

bool isShared(const CommandForm& form) {
  return std::any_of(driver::captureCommands.begin(), driver::captureCommands.end(),
                     [&](const driver::CaptureCommand& command) {
                       return command.form.name == form.name &&
                              command.inSession != InSession::refused;
                     });
}

Value most(const CommandForm& form) {
  if (form.most == CommandForm::anyNumber) return {};
  return static_cast<std::int64_t>(form.most);
}

Value rowOf(const driver::Command& command) {
  const CommandForm& form = command.form;
  return Value::Object{{"name", std::string(form.name)},
                       {"grammar", std::string(form.grammar)},
                       {"fewest", static_cast<std::int64_t>(form.fewest)},
                       {"most", most(form)},
                       {"has_own_failure", !form.wrongNumber.empty()},
                       {"acts_on_input", wordOf(command.actsOnInput)},
                       {"lives_on", command.livesOn},
                       {"is_shared", isShared(form)}};
}

}  // namespace

int main() {
  for (const driver::Command& command : driver::commands()) {
    std::cout << json::write(rowOf(command)) << '\n';
  }
}
