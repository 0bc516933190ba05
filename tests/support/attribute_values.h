#pragma once

#include <string>

#include "simulator/world/world.h"

namespace testing_support {

inline simulator::AttributeValue text(const char* value) { return std::string(value); }

}  // namespace testing_support
