#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <sys/types.h>

#include <cstdint>

namespace probe {

/// How a pointer event is made and posted. As it stands here: as driver does it for an application
/// of AppKit's, but for the point given to the window, which is in the window.
struct Form {
  bool privately = true;
  bool publicly = false;
  bool targetsWindow = true;   // field 51
  bool namesUnder = true;      // fields 91 and 92
  bool setsGroup = true;       // field 58
  bool setsPublicly = false;   // fields 40, 51, 58, 91 and 92, by the public setter
  bool pointIsGlobal = false;  // the point that CGEventSetWindowLocation gets
  std::int64_t subtype = 3;
  std::int64_t number = 3;
  std::int64_t clickState = 1;
};

struct PointerTarget {
  pid_t pid = 0;
  std::uint32_t window = 0;
  CGPoint global{};    // y downwards
  CGPoint inWindow{};  // y downwards
};

/// Posts an event of the left button, or a move.
void postPointer(const PointerTarget& target, CGEventType type, const Form& form);

/// Posts a scroll of three lines down.
void postScroll(const PointerTarget& target, const Form& form);

/// Press and release.
void postClick(const PointerTarget& target, const Form& form);

/// The four events that driver posts before a click.
void postPriming(const PointerTarget& target, const Form& form);

}  // namespace probe
