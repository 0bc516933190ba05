#include "main/dispatcher.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "accessibility/commands.h"
#include "capture/commands.h"
#include "capture/liveness.h"
#include "capture/service.h"
#include "guard/display_hold.h"
#include "guard/lock_guard.h"
#include "guard/screen_lock.h"
#include "input/focus.h"
#include "input/keyboard_commands.h"
#include "input/watcher.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "main/told_to_end.h"

namespace driver {

namespace {

using enum ActsOnInput;

constexpr bool livesOn = true;

// Names that begin so are those of input in the background, those of no command included.
constexpr std::string_view backgroundPrefix = "bg-";

constexpr Command captureService = {
    {"capture-service", "<private lock path>", 1, 1}, captureServiceCommand, no, livesOn};

/// A command of the capture group in a run of its own.
template <std::size_t index>
void runCaptureCommand(const Arguments& arguments) {
  runCaptureGroup(captureCommands[index], arguments);
}

template <std::size_t... indices>
constexpr std::array<Command, sizeof...(indices)> captureGroup(std::index_sequence<indices...>) {
  return {{{captureCommands[indices].form, runCaptureCommand<indices>,
            captureCommands[indices].actsOnInput}...}};
}

constexpr auto otherCommands = std::to_array<Command>({
    {{"focus-release", "<pid> <window>", 2, 2, invalidFocusRelease}, focusReleaseCommand, no},
    {{"bg-key", "<app> <combo>", 2, 2}, bgKeyCommand, inBackground},
    {{"bg-type", "<app> <text>", 2, 2}, bgTypeCommand, inBackground},
    {{"bg-paste-files", "<app> <path>...", 2}, bgPasteFilesCommand, inBackground},
    {{"watch-input", "[<app>]"}, watchInputCommand, no, livesOn},
    {{"permissions", ""}, permissionsCommand, no},
    {{"scene", ""}, sceneCommand, no},
    {{"lock-now", ""}, lockNowCommand, no},
    {{"lock-serve", ""}, removedLockCommand, no},
    {{"lock-arm", ""}, removedLockCommand, no},
    {{"lock-disarm", ""}, removedLockCommand, no},
    {{"lock-status", ""}, removedLockCommand, no},
    {{"lock-query", ""}, removedLockCommand, no},
    {{"lock-unlock", ""}, removedLockCommand, no},
    {{"lock-guard", ""}, lockGuardCommand, no, livesOn},
    {{"keep-awake", ""}, keepAwakeCommand, no, livesOn},
    {{"session", ""}, sessionCommand, no},
    {{"windows", "<bundleId|name>", 1}, windowsCommand, no},
    {{"ax-find-text", "<app> <text> [text...]", 2}, axFindTextCommand, no},
    {{"ax-texts-at", "<app> <x> <y>", 3}, axTextsAtCommand, no},
    {{"ax-press-child", "<app> <row label text> <child text|last> [row role]", 3},
     axPressChildCommand,
     yes},
    {{"ax-at", "<app> <x> <y>", 3}, axAtCommand, no},
    {{"ax-press", "<app> <x> <y>", 3}, axPressCommand, yes},
    {{"ax-press-in-document", "<app> <document> <button>", 3}, axPressInDocumentCommand, yes},
    {{"ax-press-exact", "<app> <label> [only|last] [container label]", 2},
     axPressExactCommand,
     yes},
    {{"ax-match", "<app> <label> <x> <y>", 4}, axMatchCommand, no},
    {{"ax-press-match", "<app> <label> <x> <y>", 4}, axPressMatchCommand, yes},
    {{"ax-popup-items", "<app>", 1}, axPopupItemsCommand, no},
    {{"ax-slider", "<app> <label> [<number>|increment|decrement]", 2}, axSliderCommand, yes},
    {{"ax-insert",
      "<app> <label> <x> <y> <replace|message|end|new_line|caret> <text> [ownedPriorJSON]", 6},
     axInsertCommand,
     yes},
    {{"ax-focus", "<app> <label> <x> <y>", 4}, axFocusCommand, yes},
    {{"reveal", "<app>", 1}, revealCommand, yes},
    {{"ax-menu", "<app> <title>...", 2}, axMenuCommand, yes},
    {{"ax-menubar", "<app>", 1}, axMenubarCommand, no},
    {{"ax-list", "<app>", 1}, axListCommand, no},
    {{"ax-dump", "<app>", 1}, axDumpCommand, no},
    {{"ax-modal", "<app>", 1}, axModalCommand, no},
    {{"ax-modal-press", "<app> <text> <button>", 3}, axModalPressCommand, yes},
    {{"ax-focused", "<app>", 1}, axFocusedCommand, no},
    {{"ax-set-value", "<app> <x> <y> <text>", 4}, axSetValueCommand, yes},
});

constexpr auto allCommands = [] {
  constexpr auto group = captureGroup(std::make_index_sequence<captureCommands.size()>());
  std::array<Command, 1 + group.size() + otherCommands.size()> table{captureService};
  auto* const rest = std::copy(group.begin(), group.end(), table.begin() + 1);
  std::copy(otherCommands.begin(), otherCommands.end(), rest);
  return table;
}();

constexpr bool isNamedAsItActs(const Command& command) {
  return command.form.name.starts_with(backgroundPrefix) == (command.actsOnInput == inBackground);
}

static_assert(std::all_of(allCommands.begin(), allCommands.end(), isNamedAsItActs));

/// Null when there is no command of this name.
const Command* commandNamed(std::string_view name) {
  const auto* const command =
      std::find_if(allCommands.begin(), allCommands.end(),
                   [&](const Command& each) { return each.form.name == name; });
  return command == allCommands.end() ? nullptr : command;
}

ActsOnInput actsOnInput(const Command* command, std::string_view name) {
  if (command != nullptr) return command->actsOnInput;
  return name.starts_with(backgroundPrefix) ? inBackground : no;
}

void dispatch(const Arguments& arguments) {
  if (arguments.size() < 2) fail("usage: driver <command> ...");
  const std::string& name = arguments[1];
  const Command* const command = commandNamed(name);
  // What other commands are checked for is the service's to provide.
  if (name != captureService.form.name) {
    requireCaptureAlive();
    checkInputContext(actsOnInput(command, name), arguments);
  }
  if (command == nullptr) fail("unknown command: " + name);
  requireArity(command->form, arguments);
  command->handler(arguments);
}

}  // namespace

std::span<const Command> commands() { return allCommands; }

int run(const std::vector<std::string>& commandLine) {
  renewGlobals();
  // Before anything is asked of the system: that may take its time.
  const Command* const command = commandLine.size() < 2 ? nullptr : commandNamed(commandLine.at(1));
  if (command == nullptr || !command->livesOn) endWhenTold();
  initialise(commandLine);
  dispatch(globals().args);
  return 0;
}

}  // namespace driver
