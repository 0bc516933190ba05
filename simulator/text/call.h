#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "simulator/text/words.h"

namespace simulator {

/// NAME(argument, argument…): what a body of lines is called, and with what.
struct Call {
  std::string name;
  std::vector<Token> arguments;                  // bare words and texts
  Spot spot;                                     // of the line that calls
  std::map<std::size_t, std::string> held = {};  // by place: the labels of `value of Label`
};

/// A call as a reaction holds it.
struct Addition {
  Call call;
};

/// Reads a call; without parentheses it has no arguments. `owner` is the word before it.
Call readCall(Words& words, const char* owner);

}  // namespace simulator
