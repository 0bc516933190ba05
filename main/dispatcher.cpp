#include "main/dispatcher.h"

#include <array>
#include <cstddef>

#include "capture/commands.h"
#include "capture/liveness.h"
#include "input/context.h"
#include "input/held_focus.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"

namespace driver {

namespace {

constexpr std::array<Command, 5> oneShotCommands = {{
    {{"focus-release", "<pid> <window>", 2, 2, invalidFocusRelease}, focusReleaseCommand},
    {{"permissions", ""}, permissionsCommand},
    {{"scene", ""}, sceneCommand},
    {{"session", ""}, sessionCommand},
    {{"windows", "<bundleId|name>", 1}, windowsCommand},
}};

constexpr auto allCommands = [] {
  std::array<Command, captureCommands.size() + oneShotCommands.size()> table{};
  std::size_t next = 0;
  for (const CommandForm& form : captureCommands) table[next++] = {form, runCaptureGroup};
  for (const Command& command : oneShotCommands) table[next++] = command;
  return table;
}();

void dispatch(const Arguments& arguments) {
  if (arguments.size() < 2) fail("usage: driver <command> ...");
  requireCaptureAlive();
  checkInputContext(arguments);
  for (const Command& command : allCommands) {
    if (command.form.name != arguments[1]) continue;
    requireArity(command.form, arguments);
    command.handler(arguments);
    return;
  }
  fail("unknown command: " + arguments[1]);
}

}  // namespace

std::span<const Command> commands() { return allCommands; }

int run(const std::vector<std::string>& commandLine) {
  initialise(commandLine);
  dispatch(globals().args);
  return 0;
}

}  // namespace driver
