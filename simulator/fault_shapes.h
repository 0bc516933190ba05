#pragma once

#include "platform/call.h"

namespace simulator {

/// The form of a function's answer, which decides how it can fail.
enum class Shape {
  fixed,  // cannot fail by itself
  post,
  optional,
  boolean,
  list,
  optionalList,
  status,
  serial,
  window,  // a serial that is an accessibility message
  readings,
  actionNames,
  hit,
  outcome,
  content,
  thrown,
  number,
  text,
};

Shape shapeOf(platform::Function function);

}  // namespace simulator
