#pragma once

#include <span>

#include "simulator/text/draft.h"
#include "simulator/text/words.h"

/// What a line may say of an element behind its role and label.
namespace simulator {

/// A row of the table of habits.
struct Habit {
  const char* phrase;       // the words that it begins with
  const char* arguments;    // what follows them; empty for nothing
  const char* description;  // what the element is then, or does
  void (*read)(Words& words, ElementDraft& draft);
  bool repeatable;
};

/// All there are.
std::span<const Habit> habits();

/// Reads habits, in any order, up to the end of the line.
void readHabits(Words& words, ElementDraft& draft);

}  // namespace simulator
