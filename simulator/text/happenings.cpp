#include "simulator/text/happenings.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "simulator/input/happenings.h"
#include "simulator/input/taps.h"
#include "simulator/input/user_input.h"
#include "simulator/mac/sharing_streams.h"
#include "simulator/text/now.h"
#include "simulator/text/value_text.h"
#include "simulator/world/pasteboard.h"
#include "simulator/world/reactions.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

using Act = void (*)(Mac& mac, const Happening& happening);
using Input = std::vector<InputEvent> (*)(World& world, const Happening& happening);
namespace with = happening_arguments;

constexpr HappeningEffect does(Act act) { return {act, nullptr}; }
constexpr HappeningEffect sends(Input input) { return {nullptr, input}; }

/// For `notTold`: a running Mac can be told so.
constexpr const char* told = nullptr;
constexpr const char* ownSignals =
    "the processes of a running Mac get their signals from the system";
constexpr const char* ownStreams =
    "each process of a running Mac has a standard input and output of its own";

/// The order is that of error messages and of pages.
constexpr std::array knownHappenings = {
    HappeningKind{"lock", with::nothing, "the screen locks",
                  does([](Mac& mac, const Happening&) { mac.world.session.locked = true; }), told},
    HappeningKind{"unlock", with::nothing, "the user unlocks the screen",
                  does([](Mac& mac, const Happening&) { mac.world.session.locked.reset(); }), told},
    HappeningKind{"leave console", with::nothing, "another user comes to front",
                  does([](Mac& mac, const Happening&) { mac.world.session.onConsole = false; }),
                  told},
    HappeningKind{"return to console", with::nothing, "the other user goes",
                  does([](Mac& mac, const Happening&) { mac.world.session.onConsole = true; }),
                  told},
    HappeningKind{
        "quit", with::application,
        "the application quits. If it was in front, the next regular one comes to front",
        does([](Mac& mac, const Happening& what) { quitApplication(mac.world, what.pid); }), told},
    HappeningKind{
        "end process", with::process, "a process that is not an application ends",
        does([](Mac& mac, const Happening& what) { mac.world.processes.erase(what.pid); }), told},
    HappeningKind{"front", with::application,
                  "the user brings the application to front, with all its windows",
                  does([](Mac& mac, const Happening& what) {
                    if (findApplication(mac.world, what.pid) != nullptr) {
                      bringToFront(mac.world, what.pid);
                    }
                  }),
                  told},
    HappeningKind{"hang", with::application, "the application stops answering",
                  does([](Mac& mac, const Happening& what) { setHanging(mac, what.pid, true); }),
                  told},
    HappeningKind{"recover", with::application, "a hanging application answers again",
                  does([](Mac& mac, const Happening& what) { setHanging(mac, what.pid, false); }),
                  told},
    HappeningKind{"in", with::reactions,
                  "the application does so by itself, not as a reaction of an element",
                  does([](Mac& mac, const Happening& what) {
                    for (std::string& said : reactByItself(mac.world, what.pid, what.reactions)) {
                      mac.arrived.push_back(std::move(said));
                    }
                  }),
                  told},
    HappeningKind{"user key", with::key, "the user presses a key while holding the modifiers",
                  sends(keyInput), told},
    HappeningKind{"user click", with::click,
                  "the user clicks, with the left button or another: the window there comes to "
                  "front, with its application, and takes the click",
                  sends(clickInput), told},
    HappeningKind{"user move", with::point, "the user moves the pointer", sends(moveInput), told},
    HappeningKind{"user scroll", with::lines,
                  "the user scrolls where the pointer is, by so many lines", sends(scrollInput),
                  told},
    HappeningKind{"user drag", with::drag,
                  "the user presses a button, left or another, moves the pointer and lets go",
                  sends(dragInput), told},
    HappeningKind{"user press", with::modifier,
                  "the user holds a modifier key down: `cmd`, `shift`, `option` or `control`",
                  sends(pressInput), told},
    HappeningKind{"user release", with::modifier, "the user lets a modifier key go",
                  sends(releaseInput), told},
    HappeningKind{
        "user copy", with::copied, "the user copies a text: the pasteboard then has nothing but it",
        does([](Mac& mac, const Happening& what) { copyText(mac.world.pasteboard, what.text); }),
        told},
    HappeningKind{"remove displays", with::nothing, "every display is unplugged",
                  does([](Mac& mac, const Happening&) { removeDisplays(mac); }), told},
    HappeningKind{"connect display", with::display,
                  "a display is plugged in; one with that number changes its size and place",
                  does([](Mac& mac, const Happening& what) { connectDisplay(mac, what.display); }),
                  told},
    HappeningKind{"disconnect display", with::displayNumber, "a display is unplugged",
                  does([](Mac& mac, const Happening& what) {
                    disconnectDisplay(mac, static_cast<std::uint32_t>(what.number));
                  }),
                  told},
    HappeningKind{"replug display", with::displayNumber,
                  "a display is unplugged and is back at once, as it was",
                  does([](Mac& mac, const Happening& what) {
                    replugDisplay(mac, static_cast<std::uint32_t>(what.number));
                  }),
                  told},
    HappeningKind{"signal", with::signal, "every process that uses the Mac gets a signal",
                  does([](Mac& mac, const Happening& what) { signalProcesses(mac, what.number); }),
                  ownSignals},
    HappeningKind{"input", with::input, "a text arrives on the standard input of the processes",
                  does([](Mac& mac, const Happening& what) {
                    for (Client* client : living(mac)) client->input += what.text;
                  }),
                  ownStreams},
    HappeningKind{"close input", with::nothing, "the standard input of the processes ends",
                  does([](Mac& mac, const Happening&) {
                    for (Client* client : living(mac)) client->inputClosed = true;
                  }),
                  ownStreams},
    HappeningKind{"close output", with::nothing, "the reader of the processes' output has gone",
                  does([](Mac& mac, const Happening&) {
                    for (Client* client : living(mac)) client->outputClosed = true;
                  }),
                  ownStreams},
    HappeningKind{"stall output", with::nothing,
                  "the reader of the processes' output stops for now",
                  does([](Mac& mac, const Happening&) {
                    for (Client* client : living(mac)) client->readerStalls = true;
                  }),
                  ownStreams},
    HappeningKind{"resume output", with::nothing, "the reader of the processes' output goes on",
                  does([](Mac& mac, const Happening&) {
                    for (Client* client : living(mac)) client->readerStalls = false;
                  }),
                  ownStreams},
    HappeningKind{"request termination", with::nothing,
                  "the processes' applications are asked to terminate",
                  does([](Mac& mac, const Happening&) {
                    tellProcesses(mac, platform::ItemKind::terminationRequest);
                  }),
                  told},
    HappeningKind{
        "end-loop", with::nothing, "the loops of the processes' applications end by themselves",
        does([](Mac& mac, const Happening&) { tellProcesses(mac, platform::ItemKind::loopEnd); }),
        told},
    HappeningKind{
        "stop sharing", with::sharing,
        "the system stops each sharing of a window of the application, as if the user had "
        "asked for it, or for another reason",
        does([](Mac& mac, const Happening& what) { stopSharing(mac, what.pid, what.text); }), told},
    HappeningKind{"withdraw recording", with::nothing,
                  "the permission to record the screen is withdrawn, which stops all sharing",
                  does([](Mac& mac, const Happening&) {
                    mac.world.screenRecordingAllowed = false;
                    stopSharing(mac, 0, captureDeclined);
                  }),
                  told},
    HappeningKind{"withdraw accessibility", with::nothing,
                  "the permission for Accessibility is withdrawn: event taps hear nothing more, "
                  "and a tap that filters holds all input until its process has gone",
                  does([](Mac& mac, const Happening&) { withdrawAccessibility(mac); }), told},
    HappeningKind{"silence taps", with::nothing, "every event tap is disabled, without a notice",
                  does([](Mac& mac, const Happening&) { silenceTaps(mac); }), told},
    HappeningKind{"invalidate taps", with::nothing,
                  "the ports of all event taps become invalid, without a notice",
                  does([](Mac& mac, const Happening&) { invalidateTaps(mac); }), told},
    HappeningKind{
        "disable taps", with::timeout,
        "the system disables every event tap, as if the user had asked for it, or for being slow",
        does([](Mac& mac, const Happening& what) {
          disableTaps(mac, what.number == 1 ? tap::disabledByTimeout : tap::disabledByUserInput);
        }),
        told},
};

/// Each says what it is, and has one effect.
constexpr bool isWholeHappening(const HappeningKind& kind) {
  const bool hasOneEffect = (kind.effect.act == nullptr) != (kind.effect.input == nullptr);
  return *kind.phrase != '\0' && *kind.description != '\0' && hasOneEffect;
}
static_assert(std::all_of(knownHappenings.begin(), knownHappenings.end(), isWholeHappening));

}  // namespace

std::span<const HappeningKind> happeningKinds() { return knownHappenings; }

std::string formOf(const HappeningKind& kind) {
  std::string form = kind.phrase;
  if (*kind.arguments.form != '\0') form += std::string(" ") + kind.arguments.form;
  return kind.effect.input == nullptr ? form : form + postedForm;
}

Happening happeningCalled(std::string_view phrase) {
  const auto kind = std::find_if(knownHappenings.begin(), knownHappenings.end(),
                                 [&](const HappeningKind& each) { return each.phrase == phrase; });
  if (kind == knownHappenings.end()) throw std::logic_error("nothing happens that is so called");
  Happening happening;
  happening.kind = &*kind;
  return happening;
}

Scripted readTimes(Words& words, const World& world) {
  constexpr std::int64_t timesMax = 1'000'000'000;
  Scripted scripted;
  const Span span = words.span("at");
  scripted.at = span.least;
  scripted.latest = span.most;
  if (words.take("drawn")) {
    requireEarlierRun(words, world, "drawn");
    readValue(words, scripted.chance);
  }
  if (!words.take("every")) return scripted;
  scripted.every = words.span("every");
  if (scripted.every->least == 0) words.fail("'every' needs a time above 0");
  if (words.nextIsNumber()) {
    scripted.times = words.integer("every", "a number from 1", 1, timesMax);
    words.expect("every", "times");
  }
  return scripted;
}

Happening readHappening(Words& words, const World& world) {
  const Phrases phrases = phrasesOf(knownHappenings);
  if (words.atEnd()) words.fail("something must happen: " + firstWords(phrases));
  const HappeningKind& kind = knownHappenings[takePhrase(words, phrases)];
  Happening happening;
  happening.kind = &kind;
  const HappeningReading reading{words, lastWord(kind.phrase), world, happening};
  kind.arguments.read(reading);
  if (kind.effect.input != nullptr) readPosted(reading);
  words.expectEnd();
  return happening;
}

std::string happeningText(const Happening& happening, const World* world) {
  const HappeningWriting writing{happening, world};
  const std::string arguments = happening.kind->arguments.text(writing);
  return happening.kind->phrase + (arguments.empty() ? "" : " " + arguments) + postedText(writing);
}

void happen(Mac& mac, const Happening& happening) {
  const HappeningEffect& effect = happening.kind->effect;
  if (effect.input == nullptr) {
    effect.act(mac, happening);
  } else {
    takeUserInput(mac, effect.input(mac.world, happening));
  }
}

}  // namespace simulator
