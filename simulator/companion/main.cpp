#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/companion/client.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/serving.h"

namespace companion {

namespace {

using Words = std::vector<std::string>;

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

struct Command {
  std::string_view name;
  std::string_view grammar;
  std::string_view summary;
  std::size_t least;  // words after the name
  std::size_t most;
  int (*handler)(const Words&);
};

int startRun(const Words& words) { return runCommand(Words(words.begin() + 1, words.end())); }
int startServe(const Words& words) { return serveCommand(Words(words.begin() + 1, words.end())); }

constexpr std::array<Command, 26> commands = {{
    {"run", "[--virtual] WORLD -- COMMAND [ARGUMENT]...",
     "run a command with a Mac of its own, and pass on its exit status", 0, unlimited, startRun},
    {"serve", "[--virtual] [--socket NAME] [--until-closed] WORLD",
     "start a Mac, print its socket and serve until stopped", 0, unlimited, startServe},
    {"screenshot", "OUT.png", "draw the screens as the user sees them", 1, 1, screenshotCommand},
    {"state", "",
     "what is the user's own: front application, keyboard, pointer, clipboard, session", 0, 0,
     controlCommand},
    {"journal", "[--text]", "what was done to the Mac and happened in it", 0, 1, controlCommand},
    {"trace", "[--text]", "every call of every process, with its answer", 0, 1, controlCommand},
    {"violations", "", "the rules of safe input that were broken so far", 0, 0, controlCommand},
    {"fault", "CALL WHICH OUTCOME", "let a call fail, for example windowserver.session 1 absent", 1,
     unlimited, controlCommand},
    {"advance", "TIME", "let virtual time pass, for example 250us, 100ms or 2s", 1, 1,
     controlCommand},
    {"user", "key KEY | click X,Y | move X,Y | scroll X,Y | drag X,Y to X,Y ...",
     "the user does something", 2, unlimited, controlCommand},
    {"lock", "", "the screen locks", 0, 0, controlCommand},
    {"unlock", "", "the user unlocks the screen", 0, 0, controlCommand},
    {"leave", "console", "another user takes the console", 1, 1, controlCommand},
    {"return", "to console", "this session has the console again", 2, 2, controlCommand},
    {"quit", "APP", "an application quits", 1, 1, controlCommand},
    {"front", "APP", "the user brings an application to the front", 1, 1, controlCommand},
    {"hang", "APP", "an application stops answering", 1, 1, controlCommand},
    {"recover", "APP", "a hanging application answers again", 1, 1, controlCommand},
    {"stop", "sharing APP [REASON]", "the system stops what shares a window of it", 2, 3,
     controlCommand},
    {"withdraw", "recording", "the screen may not be recorded any more", 1, 1, controlCommand},
    {"end", "process PID", "a process that is no application ends", 2, 2, controlCommand},
    {"remove", "displays", "every display is unplugged", 1, 1, controlCommand},
    {"connect", "display NUMBER SIZE [at X,Y] [scale N]",
     "a display is plugged in, or changes its size and place", 3, unlimited, controlCommand},
    {"disconnect", "display NUMBER", "a display is unplugged", 2, 2, controlCommand},
    {"disable", "taps [timeout]", "the system disables every event tap", 1, 2, controlCommand},
    {"request", "termination", "the processes' applications are asked to terminate", 1, 1,
     controlCommand},
}};

constexpr const char* introduction =
    "simulated-mac: a Mac for tests, as the driver sees one\n"
    "\n"
    "  simulated-mac run world.txt -- driver session\n"
    "  export SIMULATED_MAC=$(simulated-mac serve world.txt &)\n"
    "\n"
    "WORLD is a file that describes the Mac, or - for standard input. Time is real, or with\n"
    "--virtual passes only while every process waits. APP is an application's name or pid:N.\n"
    "All commands but the first two go to the Mac that SIMULATED_MAC names. They print lines of\n"
    "JSON; whatever goes wrong is one line with an \"error\", and status 1.\n"
    "\n";

std::string formOf(const Command& command) {
  const std::string blank = command.grammar.empty() ? "" : " ";
  return std::string(command.name) + blank + std::string(command.grammar);
}

std::string usageOf(const Command& command) { return "usage: simulated-mac " + formOf(command); }

std::string usage() {
  std::string names;
  for (const Command& command : commands) {
    names += (names.empty() ? "" : "|") + std::string(command.name);
  }
  return "usage: simulated-mac " + names + " ...; \"simulated-mac --help\" tells more";
}

int printHelp() {
  constexpr int indentation = 4;
  std::cout << introduction;
  for (const Command& command : commands) {
    std::cout << "  " << formOf(command) << "\n"
              << std::setw(indentation + 2) << "" << command.summary << "\n";
  }
  return 0;
}

int fail(const std::string& message) {
  std::cout << failureLine(message) << std::endl;
  return 1;
}

int carryOut(const Command& command, const Words& words) {
  const std::size_t count = words.size() - 1;
  if (count < command.least || count > command.most) return fail(usageOf(command));
  try {
    return command.handler(words);
  } catch (const UsageError&) {
    return fail(usageOf(command));
  } catch (const Failure& failure) {
    return fail(failure.what());
  }
}

int main(const Words& words) {
  if (words.empty()) return fail(usage());
  if (words[0] == "--help" || words[0] == "help") return printHelp();
  for (const Command& command : commands) {
    if (command.name == words[0]) return carryOut(command, words);
  }
  return fail("unknown command: " + words[0] + "; " + usage());
}

}  // namespace

}  // namespace companion

int main(int argumentCount, char** arguments) {
  return companion::main(
      std::vector<std::string>(arguments + std::min(argumentCount, 1), arguments + argumentCount));
}
