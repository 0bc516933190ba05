#pragma once

#include <span>
#include <string>
#include <vector>

#include "input/context.h"
#include "main/arguments.h"

namespace driver {

/// One row of the table of commands.
struct Command {
  CommandForm form;

  /// Runs the command on a command line of the right length: writes its reply, or never returns.
  void (*handler)(const Arguments& arguments);

  /// What is checked before the command runs. Every row says it.
  ActsOnInput actsOnInput;

  /// It goes on after its first line, until it is ended in a way of its own.
  bool livesOn = false;
};

/// All commands, in the order in which names are compared.
std::span<const Command> commands();

/// One run of the tool: starts it up, checks the preconditions and runs the command. Returns the
/// exit status; failures end the process themselves.
int run(const std::vector<std::string>& commandLine);

}  // namespace driver
