#include "simulator/rules/rules.h"

#include <type_traits>
#include <utility>

#include "simulator/mac/arguments.h"
#include "simulator/rules/clipboard.h"
#include "simulator/rules/elements.h"
#include "simulator/rules/ending.h"
#include "simulator/rules/focus.h"
#include "simulator/rules/guard.h"
#include "simulator/rules/guard_state.h"
#include "simulator/rules/insert.h"
#include "simulator/rules/key_target.h"
#include "simulator/rules/keys.h"
#include "simulator/rules/output.h"
#include "simulator/rules/pace.h"
#include "simulator/rules/posting.h"
#include "simulator/rules/scope.h"
#include "simulator/rules/user.h"
#include "simulator/rules/watcher.h"

namespace simulator {

using platform::Call;
using platform::Function;

namespace {

/// Whether `function` is that of a rule's own, in place of the one of all rules, which does
/// nothing.
template <class Common, class Own>
constexpr bool isOwn(Common /*common*/, Own /*function*/) {
  return !std::is_same_v<Common, Own>;
}

}  // namespace

template <class... Kinds>
void Rules::add() {
  const auto addOne = [this]<class Kind>(std::unique_ptr<Kind> rule) {
    if (isOwn(&Rule::look, &Kind::look)) interested_.look.push_back(rule.get());
    if (isOwn(&Rule::before, &Kind::before)) interested_.before.push_back(rule.get());
    if (isOwn(&Rule::after, &Kind::after)) interested_.after.push_back(rule.get());
    if (isOwn(&Rule::beforeTimePasses, &Kind::beforeTimePasses)) {
      interested_.beforeTimePasses.push_back(rule.get());
    }
    rules_.push_back(std::move(rule));
  };
  (addOne(std::make_unique<Kinds>(run_)), ...);
}

/// All rules there are, in the order in which they see a call. The pace of what was posted before
/// is judged before the present post owes waits of its own; and a key may owe more than a post.
/// What a run may still do when it is told to end depends on the latest post before this one.
Rules::Rules(const Mac& mac, const Client& client) : run_(mac, client) {
  add<EndingRules, UserRules, PaceRules, ScopeRules, PostingRules, ElementRules, InsertRules,
      GuardRules, GuardStateRules, KeyRules, KeyTargetRules, ClipboardRules, FocusRules,
      WatcherRules, OutputRules>();
}

void Rules::before(const Call& call, std::size_t flow, Violations& violations) {
  look();
  run_.interrupted = run_.interrupted || run_.client.told.has_value();
  if (isPost(call.function)) {
    run_.latestEvent = Arguments(call).get<platform::EventImage>(1);
  }
  for (Rule* rule : interested_.before) rule->before({call, flow}, violations);
}

void Rules::look() {
  for (Rule* rule : interested_.look) rule->look();
}

void Rules::beforeTimePasses(Violations& violations) {
  if (finished_) return;
  for (Rule* rule : interested_.beforeTimePasses) rule->beforeTimePasses(violations);
}

void Rules::after(const Call& call, const Answer& answer, bool faulty, std::size_t flow,
                  Violations& violations) {
  for (Rule* rule : interested_.after) rule->after({call, flow, faulty}, answer, violations);
  note(call, answer);
}

/// What the answer has told the run.
void Rules::note(const Call& call, const Answer& answer) {
  switch (call.function) {
    case Function::session: {
      const auto session = driver::unpack<std::optional<windowserver::Session>>(answer.value);
      run_.sessionUnusable =
          session && (session->locked.value_or(false) || !session->onConsole.value_or(true));
      run_.everUnusable = run_.everUnusable || run_.sessionUnusable;
      break;
    }
    case Function::nullSignal:
      // Others ask for the service they depend on, a service for its targets.
      if (!run_.isService() && !driver::unpack<bool>(answer.value)) run_.livenessFailed = true;
      break;
    case Function::createMouseEvent:
      run_.creationFailed = run_.creationFailed || answer.value.isNothing();
      break;
    case Function::writeOutput:
      run_.outputRefused = run_.outputRefused || !driver::unpack<bool>(answer.value);
      break;
    case Function::replaceFile:
      run_.fileReplaced = run_.fileReplaced || driver::unpack<bool>(answer.value);
      break;
    case Function::nextStop:
      run_.interrupted = true;
      break;
    case Function::nextItem: {
      const auto item = driver::unpack<platform::WireItem>(answer.value);
      if (item.kind == platform::ItemKind::signal) run_.interrupted = true;
      break;
    }
    default:
      break;
  }
  if (run_.endsRequest(call)) {
    run_.latestIdentity.reset();
    run_.lastSleep = 0;
  }
}

void Rules::finish(Violations& violations) {
  if (finished_) return;
  finished_ = true;
  const Client& client = run_.client;
  // Whose reader takes nothing, and who is told to end while it waits, cannot say anything.
  const bool isStalled = client.readerStalls && client.told;
  if (client.exited && !run_.outputRefused && !isStalled && !isLongLived(run_.command())) {
    run_.reply = readReply(client.output);
  }
  for (const auto& rule : rules_) rule->atEnd(violations);
}

}  // namespace simulator
