#pragma once

#include <string>

#include "simulator/text/parse.h"

namespace testing_support {

/// What is wrong with the text of a world, in the words of its error.
inline std::string errorOf(const std::string& text) {
  try {
    simulator::parseWorld(text);
  } catch (const simulator::WorldError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace testing_support
