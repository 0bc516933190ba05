#pragma once

#include <string>

#include "platform/call.h"

namespace simulator {

/// The arguments of a call, by position. A missing one, or one of another type, is a
/// MalformedDatum.
class Arguments {
 public:
  explicit Arguments(const platform::Call& call) : list_(call.arguments) {}

  template <class T>
  T get(std::size_t index) const {
    if (index >= list_.size()) throw driver::MalformedDatum();
    return driver::unpack<T>(list_[index]);
  }

  std::string text(std::size_t index) const { return get<std::string>(index); }

 private:
  const driver::Datum::List& list_;
};

}  // namespace simulator
