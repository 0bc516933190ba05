#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/companion/about.h"
#include "simulator/companion/check.h"
#include "simulator/companion/client.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/help.h"
#include "simulator/companion/import.h"
#include "simulator/companion/report.h"
#include "simulator/companion/serving.h"
#include "simulator/text/happenings.h"
#include "simulator/text/nearest.h"

namespace companion {

namespace {

using Words = std::vector<std::string>;

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

struct Command {
  std::string_view name;
  std::string_view grammar;
  std::string_view summary;
  std::string_view notInWorlds;  // why a world cannot script it; empty: no command to a Mac
  std::size_t least;             // words after the name
  std::size_t most;
  int (*handler)(const Words&);
};

int startRun(const Words& words) { return runCommand(Words(words.begin() + 1, words.end())); }
int startServe(const Words& words) { return serveCommand(Words(words.begin() + 1, words.end())); }

constexpr const char* asks = "it only asks";
constexpr const char* tellsWhen = "its lines say when they happen";
constexpr const char* endsRun = "its run ends with its processes";

/// All other words begin a happening.
constexpr std::array commands = {
    Command{"run",
            "[--virtual [--sleep]] [--seed N] [--record DIR [--no-pictures]] [--snapshot FILE] "
            "WORLD -- COMMAND [ARGUMENT]...",
            "run a command with a Mac of its own, and pass on its exit status", "", 0, unlimited,
            startRun},
    Command{"serve",
            "[--virtual] [--seed N] [--record DIR [--no-pictures]] [--socket NAME] "
            "[--view [PORT]] [--until-closed] WORLD",
            "start a Mac, print its socket and serve until stopped", "", 0, unlimited, startServe},
    Command{"stop", "", "end a Mac that was started by serve, and wait until it has gone", endsRun,
            0, 0, stopCommand},
    Command{"list", "", "the Macs of this user that run now", "", 0, 0, listCommand},
    Command{"view", "[PORT]", "show a Mac in a browser, at an address that is printed", asks, 0, 1,
            viewCommand},
    Command{"report", "DIR -o FILE", "write a page that shows the contents of a record", "", 3, 3,
            reportCommand},
    Command{"check", "[--json] WORLD...",
            "show all errors in worlds, and things that are probably not meant", "", 1, unlimited,
            checkCommand},
    Command{"import", "FILE... -o WORLD",
            "make a world from replies of windows, ax-dump and ax-menubar, or from a page source "
            "in XML",
            "", 3, unlimited, importCommand},
    Command{"screenshot", "OUT.png", "draw the screens as the user sees them", asks, 1, 1,
            fileCommand},
    Command{"snapshot", "FILE",
            "write the present state as a world, with which a Mac goes on from it", asks, 1, 1,
            fileCommand},
    Command{"state", "[--user]",
            "the user's front application, keyboard, pointer, clipboard and session; without "
            "--user also what processes hold: focus, keys, covers, taps, shared windows",
            asks, 0, 1, controlCommand},
    Command{"tree", "[APP] [--text]",
            "applications as they really are, also the parts that accessibility would not show",
            asks, 0, 2, controlCommand},
    Command{"value", "APP LABEL", "the value of the element with this label", asks, 2, 2,
            controlCommand},
    Command{"journal", "[--text]", "what was done to the Mac and happened in it", asks, 0, 1,
            controlCommand},
    Command{"trace", "[--text]", "every call of every process, with its answer", asks, 0, 1,
            controlCommand},
    Command{"violations", "", "the rules of safe input that were broken so far", asks, 0, 0,
            controlCommand},
    Command{"fault", "CALL WHICH OUTCOME",
            "let a call fail, for example windowserver.session 1 absent",
            "a world says what is there, a fault which answer a process gets", 1, unlimited,
            controlCommand},
    Command{"failed", "TEXT",
            "write into the journal that a test has failed, and why: a report begins with it",
            "a world does not know what its test expects", 1, 1, controlCommand},
    Command{"wait",
            "TIME|until APP [shows TEXT|window TITLE|element LABEL|value LABEL TEXT] [gone] "
            "[within TIME]",
            "wait so long, or until something is so, 10s at most without within; in virtual time "
            "that moves it",
            tellsWhen, 1, unlimited, controlCommand},
    Command{"advance", "TIME", "let virtual time pass, for example 250us, 100ms or 2s", tellsWhen,
            1, 1, controlCommand},
    Command{"clock", "[stop|step|run [SPEED]]",
            "let virtual time stand, go to the next instant at which anything is due, or go on: as "
            "fast as processes do, or at most so many times as fast as real time",
            tellsWhen, 0, 2, controlCommand},
};

constexpr Command happeningCommand = {"", "", "", "", 0, unlimited, controlCommand};

constexpr const char* introduction =
    "simulated-mac: a Mac for tests, as the driver sees one\n"
    "\n"
    "  simulated-mac run desk.world -- driver session\n"
    "  export SIMULATED_MAC=$(simulated-mac serve desk.world &)\n"
    "\n"
    "WORLD is a file that describes the Mac, or - for standard input. Time is real, or with\n"
    "--virtual passes only while every process waits. APP is an application's name or pid:N.\n"
    "All commands but run, serve, list, report, check, import and help go to the Mac that\n"
    "SIMULATED_MAC names. They print lines of JSON. Every failure is one line with an \"error\",\n"
    "and status 1; serve writes it to standard error, so that standard output has the socket's\n"
    "name alone.\n"
    "\n";

std::string formOf(const Command& command) {
  const std::string blank = command.grammar.empty() ? "" : " ";
  return std::string(command.name) + blank + std::string(command.grammar);
}

std::string usageOf(const Command& command) { return "usage: simulated-mac " + formOf(command); }

bool canBeTold(const simulator::HappeningKind& kind) { return kind.notTold == nullptr; }

/// The words that a happening may begin with, each once.
simulator::Phrases happeningNames(bool (*isWanted)(const simulator::HappeningKind&)) {
  simulator::Phrases phrases;
  for (const simulator::HappeningKind& kind : simulator::happeningKinds()) {
    if (isWanted(kind)) phrases.emplace_back(kind.phrase);
  }
  return simulator::eachFirstWord(phrases);
}

bool beginsHappening(std::string_view word) {
  const auto names = happeningNames([](const auto&) { return true; });
  return std::find(names.begin(), names.end(), word) != names.end();
}

/// "stop" is a command, and "stop sharing" a happening.
bool isHappening(const Words& words) { return words[0] == "stop" && words.size() > 1; }

std::string usage() {
  std::string names;
  for (const Command& command : commands) {
    names += (names.empty() ? "" : "|") + std::string(command.name);
  }
  for (const std::string_view name : happeningNames(canBeTold)) {
    if (name != "stop") names += "|" + std::string(name);
  }
  return "usage: simulated-mac " + names + " ...; \"simulated-mac --help\" tells more";
}

/// For a word that is nearly one of the commands.
std::string meantBy(const std::string& word) {
  Words names = {"help", "--help", "--version"};
  for (const Command& command : commands) names.emplace_back(command.name);
  for (const std::string_view name : happeningNames(canBeTold)) names.emplace_back(name);
  return simulator::suggestion(simulator::nearest(word, names));
}

int help(const Words& words);

constexpr Command helpCommand = {
    "help", "[TOPIC]", "print this, or what is known of a topic", "", 0, 1, help};

void printCommand(const std::string& form, std::string_view summary) {
  constexpr int indentation = 6;
  std::cout << "  " << form << "\n" << std::setw(indentation) << "" << summary << "\n";
}

void printCommand(const Command& command) {
  std::string summary(command.summary);
  if (!command.notInWorlds.empty()) {
    summary += " (not in worlds: " + std::string(command.notInWorlds) + ")";
  }
  printCommand(formOf(command), summary);
}

/// The commands, or with a topic its table. It needs no Mac.
int help(const Words& words) {
  if (words.size() > 1) {
    std::cout << topicText(words[1]);
    return 0;
  }
  std::cout << introduction;
  for (const Command& command : commands) printCommand(command);
  printCommand(helpCommand);
  for (const simulator::HappeningKind& kind : simulator::happeningKinds()) {
    if (canBeTold(kind)) printCommand(formOf(kind), kind.description);
  }
  std::cout << "\nTopics:\n\n" << topicLines();
  return 0;
}

int fail(const std::string& message, std::ostream& stream = std::cout) {
  stream << failureLine(message) << std::endl;
  return 1;
}

int carryOut(const Command& command, const Words& words) {
  // Whoever takes the output of serve for a socket's name is not to take an error for one.
  std::ostream& errors = command.handler == startServe ? std::cerr : std::cout;
  const std::size_t count = words.size() - 1;
  if (count < command.least || count > command.most) return fail(usageOf(command), errors);
  try {
    return command.handler(words);
  } catch (const UsageError&) {
    return fail(usageOf(command), errors);
  } catch (const Failure& failure) {
    return fail(failure.what(), errors);
  }
}

int main(const Words& words) {
  if (words.empty()) return fail(usage());
  if (words[0] == "--help") return help({words[0]});
  if (words[0] == "--version") {
    std::cout << versionText() << std::endl;
    return 0;
  }
  if (words[0] == helpCommand.name) return carryOut(helpCommand, words);
  for (const Command& command : commands) {
    if (command.name == words[0] && !isHappening(words)) return carryOut(command, words);
  }
  // What may follow, the Mac knows best: applications, for example, are its own.
  if (beginsHappening(words[0])) return carryOut(happeningCommand, words);
  return fail("unknown command: " + words[0] + meantBy(words[0]) + "; " + usage());
}

}  // namespace

}  // namespace companion

int main(int argumentCount, char** arguments) {
  return companion::main(
      std::vector<std::string>(arguments + std::min(argumentCount, 1), arguments + argumentCount));
}
