// Posts event records to an application of our own in the background: as driver does it, with each
// byte left out in turn, and in other forms that are known. Another application of our own is in
// front meanwhile, to see whether its window stays key.
#include <limits>
#include <string>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/records.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::Record;
using probe::Verdict;
using probe::verdictOf;

constexpr int quietMilliseconds = 300;
constexpr int settleMilliseconds = 700;

/// What a receiver in the background shows after records, and one in front.
struct Effect {
  int status = 0;
  Receiver::State state;
  std::vector<std::string> lines;
  std::uint32_t second = 0;  // the number of its second window
  bool frontStays = false;

  bool madeKey() const { return state.keyWindow == second && second != 0; }
  long long presses() const { return probe::countThatBegin(lines, "press "); }
  std::string shown() const {
    return "status " + std::to_string(status) + (madeKey() ? ", key" : ", not key") +
           (state.active ? ", active" : ", not active") + ", " + std::to_string(presses()) +
           " presses" + (frontStays ? "" : ", the front window is no longer key");
  }
};

/// A receiver in front, whose first window is key.
class Front {
 public:
  Front() {
    if (receiver_.isReady()) comeToFront();
  }
  void comeToFront() {
    receiver_.tell("front");
    receiver_.tell("key");
    probe::sleepMilliseconds(settleMilliseconds);
  }
  bool isKey() {
    const Receiver::State state = receiver_.state();
    return state.active && state.keyWindow == receiver_.window(0) &&
           probe::frontPid() == receiver_.pid();
  }

 private:
  Receiver receiver_;
};

/// What a fresh receiver shows after these records for its second window, posted by `send`.
template <class Send>
Effect effectOf(Front& front, const Send& send) {
  Receiver receiver;
  Effect effect;
  if (!receiver.isReady()) return effect;
  receiver.linesUntilQuiet(quietMilliseconds);
  effect.second = receiver.window(1);
  effect.status = send(receiver);
  probe::sleepMilliseconds(settleMilliseconds);
  effect.state = receiver.state();
  effect.lines = receiver.linesUntilQuiet(quietMilliseconds);
  effect.frontStays = front.isKey();
  return effect;
}

/// Focus, and a pair of key records that `change` may change.
template <class Change>
Effect pairWith(Front& front, const Change& change) {
  return effectOf(front, [&](Receiver& receiver) {
    const std::uint32_t window = receiver.window(1);
    probe::giveFocus(receiver.pid(), window);
    const int pressed =
        probe::post(receiver.pid(), change(probe::keyRecord(window, probe::mouseDownRecord)));
    const int released =
        probe::post(receiver.pid(), change(probe::keyRecord(window, probe::mouseUpRecord)));
    return pressed != 0 ? pressed : released;
  });
}

Effect prescribedPair(Front& front) {
  return pairWith(front, [](Record record) { return record; });
}

/// The same for the record that gives focus, alone.
template <class Change>
Effect focusWith(Front& front, const Change& change) {
  return effectOf(front, [&](Receiver& receiver) {
    return probe::post(receiver.pid(), change(probe::focusRecord(receiver.window(1), true)));
  });
}

/// Where what begins at this place of a record ends.
int endOf(int at) {
  constexpr int numberBytes = 4;
  if (at == probe::offset::windowLocation) return probe::offset::windowLocationEnd;
  return at + (at == probe::offset::window ? numberBytes : 1);
}

Record without(Record record, int at) {
  for (int index = at; index < endOf(at); ++index) record[static_cast<std::size_t>(index)] = 0;
  return record;
}

std::string nameWithout(const char* what, int at) {
  char name[60];
  std::snprintf(name, sizeof name, "%s without 0x%02X", what, static_cast<unsigned>(at));
  return name;
}

/// All that is set left out in turn, and other locations. What is prescribed stays the measure.
int eventRecord(const std::string& assumption, Front& front) {
  const Effect prescribed = prescribedPair(front);
  Evidence evidence;
  evidence.add("as prescribed", prescribed.shown());
  for (const int at : {probe::offset::length, probe::offset::type, probe::offset::keyFlag,
                       probe::offset::window, probe::offset::windowLocation}) {
    const Effect effect = pairWith(front, [at](Record record) { return without(record, at); });
    evidence.add(nameWithout("key records", at), effect.shown());
  }
  for (const int at : {probe::offset::length, probe::offset::type, probe::offset::window,
                       probe::offset::focusChange}) {
    const Effect effect = focusWith(front, [at](Record record) { return without(record, at); });
    evidence.add(nameWithout("the focus record", at), effect.shown());
  }
  const auto at = [&](const char* name, double x, double y) {
    const Effect effect =
        pairWith(front, [=](Record record) { return probe::withLocation(record, x, y); });
    evidence.add(name, effect.shown());
  };
  at("at -1,-1", -1, -1);
  at("at 300000,300000", 300'000, 300'000);
  const Effect alone = effectOf(front, [](Receiver& receiver) {
    const std::uint32_t window = receiver.window(1);
    probe::giveFocus(receiver.pid(), window);
    return probe::post(
        receiver.pid(),
        probe::withLocation(probe::keyRecord(window, probe::mouseDownRecord), 300'000, 300'000));
  });
  evidence.add("at 300000,300000, the press alone", alone.shown());
  return probe::answer(
      assumption,
      verdictOf(prescribed.status == 0 && prescribed.madeKey() && prescribed.presses() == 0),
      evidence);
}

int keyRecords(const std::string& assumption, Front& front) {
  const Effect both = prescribedPair(front);
  const Effect pairAlone = effectOf(
      front, [](Receiver& receiver) { return probe::makeKey(receiver.pid(), receiver.window(1)); });
  return probe::answer(assumption, verdictOf(both.madeKey() && both.frontStays),
                       Evidence()
                           .add("focus and key records", both.shown())
                           .add("key records alone", pairAlone.shown())
                           .addJson("arrived", probe::jsonList(both.lines)));
}

int focusRecord(const std::string& assumption, Front& front) {
  const Effect given = effectOf(front, [](Receiver& receiver) {
    return probe::giveFocus(receiver.pid(), receiver.window(1));
  });
  const Effect taken = effectOf(front, [](Receiver& receiver) {
    probe::giveFocus(receiver.pid(), receiver.window(1));
    return probe::post(receiver.pid(), probe::focusRecord(receiver.window(1), false));
  });
  return probe::answer(
      assumption,
      verdictOf(given.state.active && !taken.state.active && given.frontStays && taken.frontStays),
      Evidence()
          .add("given", given.shown())
          .add("given and taken", taken.shown())
          .addJson("arrived", probe::jsonList(given.lines)));
}

int focusOfClosedWindow(const std::string& assumption, Front& front) {
  const Effect given = effectOf(front, [](Receiver& receiver) {
    return probe::giveFocus(receiver.pid(), receiver.window(0));
  });
  const Effect closed = effectOf(front, [](Receiver& receiver) {
    const int status = probe::giveFocus(receiver.pid(), receiver.window(0));
    receiver.tell("close");
    return status;
  });
  const Verdict verdict = given.state.active ? verdictOf(!closed.state.active) : Verdict::notShown;
  return probe::answer(assumption, verdict,
                       Evidence().add("given", given.shown()).add("then closed", closed.shown()));
}

/// The application comes to front and goes back, as when the user visits it.
int focusAfterVisit(const std::string& assumption, Front& front) {
  const Effect given = effectOf(front, [](Receiver& receiver) {
    return probe::giveFocus(receiver.pid(), receiver.window(1));
  });
  const Effect visited = effectOf(front, [&](Receiver& receiver) {
    const int status = probe::giveFocus(receiver.pid(), receiver.window(1));
    receiver.tell("front");
    probe::sleepMilliseconds(settleMilliseconds);
    front.comeToFront();
    return status;
  });
  const Verdict verdict = given.state.active && visited.frontStays ? verdictOf(visited.state.active)
                                                                   : Verdict::notShown;
  return probe::answer(assumption, verdict,
                       Evidence().add("given", given.shown()).add("then visited", visited.shown()));
}

int postRecord(const std::string& assumption, Front& front) {
  const Effect effect = effectOf(front, [](Receiver& receiver) {
    return probe::giveFocus(receiver.pid(), receiver.window(1));
  });
  return probe::answer(
      assumption, verdictOf(effect.status == 0 && !effect.lines.empty()),
      Evidence().add("status", effect.status).addJson("arrived", probe::jsonList(effect.lines)));
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  if (!probe::privateFunctions().isComplete())
    return probe::notShown(assumption, "a private function is missing");
  Front front;
  if (!front.isKey()) return probe::notShown(assumption, "no application of ours came to front");
  if (assumption == "event-record") return eventRecord(assumption, front);
  if (assumption == "key-records") return keyRecords(assumption, front);
  if (assumption == "focus-record") return focusRecord(assumption, front);
  if (assumption == "focus-of-closed-window") return focusOfClosedWindow(assumption, front);
  if (assumption == "focus-after-visit") return focusAfterVisit(assumption, front);
  if (assumption == "post-record") return postRecord(assumption, front);
  return probe::notShown(assumption, "it is not asked here");
}
