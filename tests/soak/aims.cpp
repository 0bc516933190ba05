#include "tests/soak/aims.h"

#include <algorithm>
#include <array>

namespace soak {

namespace {

constexpr std::array aims = {
    Aim{"ax-slider", "AXSlider AXSlider AXGroup", {&Features::twins}},
    Aim{"ax-modal", "AXSheet AXPopover AXButton AXStaticText", {&Features::sheets}},
    Aim{"ax-modal-press",
        "AXSheet AXPopover AXButton AXButton AXStaticText",
        {&Features::sheets, &Features::twins}},
    Aim{"ax-press-child", "AXRow AXButton AXButton AXStaticText"},
    Aim{"ax-press-child", "AXRow AXButton", {&Features::serviceEnds}},
    Aim{"ax-press-exact", "AXButton AXButton AXStaticText AXGroup", {&Features::twins}},
    Aim{"ax-press-in-document", "AXWebArea AXButton AXLink"},
    Aim{"ax-press", "AXButton AXLink", {&Features::signals, &Features::slow}},
    Aim{"ax-match", "AXButton AXLink AXTextField"},
    Aim{"ax-insert", "AXTextArea AXTextField AXSheet", {&Features::fieldHabits}},
    Aim{"ax-insert", "AXTextArea AXTextArea AXTextField", {&Features::twins}},
    Aim{"ax-insert", "AXTextArea", {&Features::fieldHabits, &Features::session}},
    Aim{"ax-focused", "AXTextArea AXTextField AXSheet AXPopover"},
    Aim{"ax-set-value", "AXTextArea AXTextField AXSlider"},
    Aim{"ax-popup-items", "AXPopUpButton AXMenuButton AXMenuButton AXButton"},
    Aim{"ax-menu", "", {&Features::menus}},
    Aim{"bg-key", "AXTextArea", {&Features::menus, &Features::session}},
    Aim{"bg-key", "AXTextArea", {&Features::menus, &Features::windowActs, &Features::later}, "ax."},
    Aim{"bg-key", "AXTextArea AXSheet", {&Features::userClicks, &Features::chromium}, "private."},
    Aim{"bg-key", "AXTextArea", {&Features::signals}, "private."},
    Aim{"bg-type", "AXTextArea", {&Features::userClicks}, "private."},
    Aim{"bg-type", "AXTextArea", {&Features::signals}, "quartz."},
    Aim{"bg-type", "AXTextArea AXSheet", {&Features::chromium, &Features::sheets}},
    Aim{"bg-type", "AXTextArea AXTextField", {&Features::panel}},
    Aim{"bg-paste-files", "AXTextArea", {&Features::userCopies, &Features::pasteboard}, "paste"},
    Aim{"bg-paste-files", "AXTextArea", {&Features::userCopies}, "paste"},
    Aim{"bg-paste-files", "AXTextArea", {&Features::signals, &Features::pasteboard}, "paste"},
    Aim{"bg-click", "AXButton AXLink", {&Features::signals}, "private."},
    Aim{"bg-drag", "AXButton AXTextArea", {&Features::signals}, "quartz."},
    Aim{"capture", "", {&Features::displays}},
    Aim{"reveal", "", {&Features::hidden}},
    Aim{"capture-service", "", {&Features::living, &Features::pointer}, "share."},
    Aim{"capture-service", "", {&Features::living, &Features::userClicks}, "private."},
    Aim{"lock-guard", "", {&Features::living, &Features::userTypes}, "tap."},
    Aim{"lock-guard", "", {&Features::living, &Features::system, &Features::userTypes}},
    Aim{"lock-guard", "", {&Features::living, &Features::hardware}, "cover."},
    Aim{"watch-input", "", {&Features::living, &Features::userTypes, &Features::later}, "tap."},
    Aim{"watch-input", "", {&Features::living, &Features::userClicks}, "streams."},
};

}  // namespace

const Aim& someAim(Random& random) { return random.pick(aims); }

void addFeatures(const Aim& aim, Features& features) {
  for (bool Features::*const feature : aim.features) {
    if (feature != nullptr) features.*feature = true;
  }
}

bool isAbout(const Aim* aim, std::string_view command) {
  return aim != nullptr && aim->command == command;
}

std::string_view aimedRole(Random& random, const Aim& aim) {
  const auto count = std::count(aim.roles.begin(), aim.roles.end(), ' ');
  std::string_view rest = aim.roles;
  for (std::size_t i = random.below(static_cast<std::size_t>(count) + 1); i > 0; --i) {
    rest.remove_prefix(rest.find(' ') + 1);
  }
  return rest.substr(0, rest.find(' '));
}

}  // namespace soak
