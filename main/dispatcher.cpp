#include "main/dispatcher.h"

#include <array>
#include <cstddef>

#include "accessibility/commands.h"
#include "capture/commands.h"
#include "capture/liveness.h"
#include "capture/service.h"
#include "guard/display_hold.h"
#include "guard/lock_guard.h"
#include "guard/screen_lock.h"
#include "input/context.h"
#include "input/focus.h"
#include "input/keyboard_commands.h"
#include "input/watcher.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"

namespace driver {

namespace {

constexpr std::array<Command, 40> otherCommands = {{
    {{"focus-release", "<pid> <window>", 2, 2, invalidFocusRelease}, focusReleaseCommand},
    {{"bg-key", "<app> <combo>", 2, 2}, bgKeyCommand},
    {{"bg-type", "<app> <text>", 2, 2}, bgTypeCommand},
    {{"bg-paste-files", "<app> <path>...", 2}, bgPasteFilesCommand},
    {{"watch-input", "[<app>]"}, watchInputCommand},
    {{"permissions", ""}, permissionsCommand},
    {{"scene", ""}, sceneCommand},
    {{"lock-now", ""}, lockNowCommand},
    {{"lock-serve", ""}, removedLockCommand},
    {{"lock-arm", ""}, removedLockCommand},
    {{"lock-disarm", ""}, removedLockCommand},
    {{"lock-status", ""}, removedLockCommand},
    {{"lock-query", ""}, removedLockCommand},
    {{"lock-unlock", ""}, removedLockCommand},
    {{"lock-guard", ""}, lockGuardCommand},
    {{"keep-awake", ""}, keepAwakeCommand},
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
  std::array<Command, 1 + captureCommands.size() + otherCommands.size()> table{};
  std::size_t next = 0;
  table[next++] = {captureServiceForm, captureServiceCommand};
  for (const CommandForm& form : captureCommands) table[next++] = {form, runCaptureGroup};
  for (const Command& command : otherCommands) table[next++] = command;
  return table;
}();

void dispatch(const Arguments& arguments) {
  if (arguments.size() < 2) fail("usage: driver <command> ...");
  // What other commands are checked for is this one's to provide.
  const Command& service = allCommands.front();
  if (arguments[1] == service.form.name) {
    requireArity(service.form, arguments);
    service.handler(arguments);
    return;
  }
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
