#pragma once

#include <string>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// What follows the phrase of a happening.
namespace simulator {

/// What the words behind a phrase are read from and into.
struct HappeningReading {
  Words& words;
  const char* owner;   // the phrase's last word, for errors
  const World& world;  // whose applications are meant
  Happening& happening;
};

/// What is written, and how.
struct HappeningWriting {
  const Happening& happening;
  const World* world;  // as for `writtenName`
};

struct HappeningArguments {
  const char* form;  // as help shows it; empty for nothing
  void (*read)(const HappeningReading& reading);
  std::string (*text)(const HappeningWriting& with);  // as `read` reads it back
};

/// What the user's input may have behind all else: that it was posted into the session, and not by
/// the user's devices. Its text begins with a blank, or is empty.
inline constexpr const char* postedForm = " [tagged] [for APP]";
void readPosted(const HappeningReading& reading);
std::string postedText(const HappeningWriting& with);

namespace happening_arguments {

extern const HappeningArguments nothing;
extern const HappeningArguments application;    // `pid`
extern const HappeningArguments process;        // `pid`
extern const HappeningArguments reactions;      // `pid` and `reactions`
extern const HappeningArguments key;            // `modifiers` and `text`
extern const HappeningArguments modifier;       // `modifiers`: one
extern const HappeningArguments click;          // `point` and `button`
extern const HappeningArguments point;          // `point`
extern const HappeningArguments lines;          // `point`: how far
extern const HappeningArguments drag;           // `point`, `end` and `button`
extern const HappeningArguments copied;         // `text`
extern const HappeningArguments input;          // `text`
extern const HappeningArguments display;        // `display`
extern const HappeningArguments displayNumber;  // `number`
extern const HappeningArguments signal;         // `number`
extern const HappeningArguments sharing;        // `pid` and `text`: why
extern const HappeningArguments timeout;        // `number`: 1 for being slow

}  // namespace happening_arguments

}  // namespace simulator
