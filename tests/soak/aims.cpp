#include "tests/soak/aims.h"

#include <algorithm>
#include <array>

namespace soak {

namespace {

constexpr std::array aims = {
    Aim{"ax-slider", "AXSlider AXSlider AXGroup"},
    Aim{"ax-modal", "AXSheet AXPopover AXButton AXStaticText", &Features::sheets},
    Aim{"ax-modal-press", "AXSheet AXPopover AXButton AXStaticText", &Features::sheets},
    Aim{"ax-press-child", "AXRow AXRow AXButton AXGroup AXStaticText"},
    Aim{"ax-press-exact", "AXButton AXButton AXStaticText AXGroup"},
    Aim{"ax-press-in-document", "AXWebArea AXButton AXLink"},
    Aim{"ax-match", "AXButton AXLink AXTextField"},
    Aim{"ax-insert", "AXTextArea AXTextField AXSheet", &Features::fieldHabits},
    Aim{"ax-insert", "AXTextArea AXTextArea AXTextField"},
    Aim{"ax-focused", "AXTextArea AXTextField AXSheet AXPopover"},
    Aim{"ax-set-value", "AXTextArea AXTextField AXSlider"},
    Aim{"ax-popup-items", "AXPopUpButton AXMenuButton AXButton"},
    Aim{"ax-menu", "", &Features::menus},
    Aim{"bg-key", "AXTextArea", &Features::menus},
    Aim{"bg-key", "AXTextArea AXSheet", &Features::userClicks},
    Aim{"bg-type", "AXTextArea", &Features::userClicks},
    Aim{"bg-paste-files", "AXTextArea", &Features::userCopies},
    Aim{"bg-click", "AXButton AXLink"},
    Aim{"bg-drag", "AXButton AXTextArea"},
    Aim{"capture", "", &Features::displays},
    Aim{"reveal", "", &Features::hidden},
};

}  // namespace

const Aim& someAim(Random& random) { return random.pick(aims); }

std::string_view aimedRole(Random& random, const Aim& aim) {
  const auto count = std::count(aim.roles.begin(), aim.roles.end(), ' ');
  std::string_view rest = aim.roles;
  for (std::size_t i = random.below(static_cast<std::size_t>(count) + 1); i > 0; --i) {
    rest.remove_prefix(rest.find(' ') + 1);
  }
  return rest.substr(0, rest.find(' '));
}

}  // namespace soak
