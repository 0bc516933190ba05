#include "main/dispatcher.h"

#include <array>
#include <cstddef>

#include "accessibility/commands.h"
#include "capture/commands.h"
#include "capture/liveness.h"
#include "input/context.h"
#include "input/held_focus.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"

namespace driver {

namespace {

constexpr std::array<Command, 27> oneShotCommands = {{
    {{"focus-release", "<pid> <window>", 2, 2, invalidFocusRelease}, focusReleaseCommand},
    {{"permissions", ""}, permissionsCommand},
    {{"scene", ""}, sceneCommand},
    {{"session", ""}, sessionCommand},
    {{"windows", "<bundleId|name>", 1}, windowsCommand},
    {{"ax-find-text", "<app> <text> [text...]", 2}, axFindTextCommand},
    {{"ax-texts-at", "<app> <x> <y>", 3}, axTextsAtCommand},
    {{"ax-press-child", "<app> <row label text> <child text|last> [row role]", 3},
     axPressChildCommand},
    {{"ax-at", "<app> <x> <y>", 3}, axAtCommand},
    {{"ax-press", "<app> <x> <y>", 3}, axPressCommand},
    {{"ax-press-in-document", "<app> <document> <button>", 3}, axPressInDocumentCommand},
    {{"ax-press-exact", "<app> <label> [only|last] [container label]", 2}, axPressExactCommand},
    {{"ax-match", "<app> <label> <x> <y>", 4}, axMatchCommand},
    {{"ax-press-match", "<app> <label> <x> <y>", 4}, axMatchCommand},
    {{"ax-popup-items", "<app>", 1}, axPopupItemsCommand},
    {{"ax-slider", "<app> <label> [<number>|increment|decrement]", 2}, axSliderCommand},
    {{"ax-insert",
      "<app> <label> <x> <y> <replace|message|end|new_line|caret> <text> [ownedPriorJSON]", 6},
     axInsertCommand},
    {{"ax-focus", "<app> <label> <x> <y>", 4}, axFocusCommand},
    {{"reveal", "<app>", 1}, revealCommand},
    {{"ax-menu", "<app> <title>...", 2}, axMenuCommand},
    {{"ax-menubar", "<app>", 1}, axMenubarCommand},
    {{"ax-list", "<app>", 1}, axListCommand},
    {{"ax-dump", "<app>", 1}, axDumpCommand},
    {{"ax-modal", "<app>", 1}, axModalCommand},
    {{"ax-modal-press", "<app> <text> <button>", 3}, axModalPressCommand},
    {{"ax-focused", "<app>", 1}, axFocusedCommand},
    {{"ax-set-value", "<app> <x> <y> <text>", 4}, axSetValueCommand},
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
