#include "simulator/rules/output.h"

#include <algorithm>
#include <string_view>

namespace simulator {

namespace {

/// Commands whose reply tells a failure by "ok" alone.
bool isSilent(std::string_view command) {
  return command == "ax-focus" || command == "ax-slider" || command == "lock-now";
}

bool isPointerCommand(const WatchedRun& run) {
  return run.command().starts_with("bg-") && !run.pressesKeys();
}

/// Why the lines of a service do not belong to the way it has ended; one sentence each.
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
  return faults;
}

/// Of lines, all of them whole.
bool endInFailure(std::string_view lines) {
  if (lines.empty()) return false;
  const std::size_t before = lines.substr(0, lines.size() - 1).rfind('\n');
  const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
  const ReplyFacts last = readReply(std::string(lines.substr(start)));
  return last.faults.empty() && !last.ok;
}

}  // namespace

void OutputRules::atEnd(Violations& violations) {
  if (run_.outputRefused) return;  // what nobody takes need not be whole
  if (isLongLived(run_.command())) checkLines(violations);
  if (run_.isService()) checkServiceLines(violations);
  if (run_.reply) checkReply(*run_.reply, violations);
}

void OutputRules::checkLines(Violations& violations) const {
  // Who is killed may be about to end a line, and who ends before its reader takes the line feed.
  const Client& client = run_.client;
  const std::string& output = client.output;
  const bool isWhole = client.exited && !client.readerStalls;
  const std::string lines = isWhole ? output : output.substr(0, output.rfind('\n') + 1);
  for (const std::string& fault : lineFaults(lines)) violations.push_back("I7: " + fault);
  if (client.exited && !client.diedBySignal && output.empty()) {
    violations.push_back("I7: the run ended without a line");
  }
  if (client.exited && !client.diedBySignal && client.status != 1 && endInFailure(lines)) {
    violations.push_back("I7: the last line is a failure, the status is not");
  }
  if (run_.livenessFailed && !isLivenessRefusal(output)) {
    violations.push_back("I2: the run did not end with the refusal");
  }
}

void OutputRules::checkServiceLines(Violations& violations) const {
  for (const std::string& fault : endingFaults(run_.client)) violations.push_back("I7: " + fault);
}

void OutputRules::checkReply(const ReplyFacts& reply, Violations& violations) const {
  const Client& client = run_.client;
  for (const std::string& fault : reply.faults) violations.push_back("I6: " + fault);
  if (reply.faults.empty() && !reply.ok && !reply.saysWhy && !isSilent(run_.command())) {
    violations.push_back("I6: a failure without an \"error\"");
  }
  if (reply.ok && client.status != 0) violations.push_back("I6: success with a failure status");
  if (client.status != 0 && client.status != 1) violations.push_back("I6: unknown exit status");
  // Who is told to end after that check says so instead, and ends by the signal.
  const bool endsAsTold = client.told && client.diedBySignal == client.told->signal;
  const bool isRefusal = client.status == 1 && isLivenessRefusal(client.output);
  if (run_.livenessFailed && !isRefusal && !endsAsTold) {
    violations.push_back("I2: the run did not end with the refusal");
  }
  if (isPointerCommand(run_) && run_.everUnusable && reply.ok) {
    violations.push_back("I8: input was withheld, yet the reply is a success");
  }
  // The file's own system may refuse what the Mac lets through; the reply says so. Who is told to
  // end may have done its work.
  if (run_.fileReplaced && !reply.ok && !reply.cannotWrite && !client.told) {
    violations.push_back("I19: a file was replaced by a failed run");
  }
}

}  // namespace simulator
