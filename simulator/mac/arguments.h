#pragma once

#include <string>

#include "platform/call.h"
#include "simulator/world/world.h"

namespace simulator {

/// The arguments of a call, by position. A missing one, or one of another type, is a
/// MalformedDatum.
class Arguments {
 public:
  explicit Arguments(const platform::Call& call, Microseconds since = 0)
      : list_(call.arguments), since_(since) {}

  /// When the call was made: now, or before for one that was pending.
  Microseconds since() const { return since_; }

  std::size_t count() const { return list_.size(); }

  template <class T>
  T get(std::size_t index) const {
    if (index >= list_.size()) throw driver::MalformedDatum();
    return driver::unpack<T>(list_[index]);
  }

  /// A text or a list as it came.
  template <class T>
  const T& borrowed(std::size_t index) const {
    if (index >= list_.size()) throw driver::MalformedDatum();
    return driver::datum_detail::as<T>(list_[index]);
  }

  std::string text(std::size_t index) const { return get<std::string>(index); }

 private:
  const driver::Datum::List& list_;
  Microseconds since_;
};

}  // namespace simulator
