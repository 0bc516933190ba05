#include "tests/soak/features.h"

#include <array>

namespace soak {

namespace {

using Feature = bool Features::*;

struct Share {
  Feature feature;
  std::size_t oneIn;
};

/// How many cases have each.
constexpr std::array shares = {
    Share{&Features::oddTexts, 4},
    Share{&Features::chromium, 2},
    Share{&Features::oddApplications, 5},
    Share{&Features::hidden, 5},
    Share{&Features::slow, 6},
    Share{&Features::hanging, 10},
    Share{&Features::oddWindows, 4},
    Share{&Features::sheets, 4},
    Share{&Features::panel, 8},
    Share{&Features::menus, 3},
    Share{&Features::deepTrees, 3},
    Share{&Features::largeTrees, 50},
    Share{&Features::endlessTrees, 25},
    Share{&Features::lies, 6},
    Share{&Features::fieldHabits, 3},
    Share{&Features::twins, 4},
    Share{&Features::windowActs, 4},
    Share{&Features::deadlyActs, 8},
    Share{&Features::displays, 4},
    Share{&Features::denials, 8},
    Share{&Features::pasteboard, 2},
    Share{&Features::otherKeyboard, 5},
    Share{&Features::userMoves, 4},
    Share{&Features::userClicks, 3},
    Share{&Features::userTypes, 4},
    Share{&Features::userCopies, 5},
    Share{&Features::userSwitches, 5},
    Share{&Features::session, 6},
    Share{&Features::hardware, 10},
    Share{&Features::system, 10},
    Share{&Features::signals, 8},
    Share{&Features::serviceEnds, 12},
    Share{&Features::scope, 4},
    Share{&Features::service, 3},
    Share{&Features::oddArguments, 5},
    Share{&Features::pointer, 2},
    Share{&Features::keyboard, 2},
    Share{&Features::accessibility, 2},
    Share{&Features::pictures, 8},
    Share{&Features::faults, 4},
    Share{&Features::living, 4},
    Share{&Features::latencies, 4},
    Share{&Features::changing, 5},
    Share{&Features::later, 5},
    Share{&Features::scrolling, 5},
    Share{&Features::turns, 2},
    Share{&Features::fewTexts, 4},
    Share{&Features::aimed, 2},
    Share{&Features::releases, 6},
    Share{&Features::tracking, 8},
    Share{&Features::marking, 8},
    Share{&Features::templates, 6},
};

}  // namespace

Features drawFeatures(Random random) {
  Features features;
  for (const Share& share : shares) features.*share.feature = random.oneIn(share.oneIn);
  return features;
}

}  // namespace soak
