#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"

namespace simulator {

/// One call as it was answered.
struct TraceEntry {
  Microseconds at = 0;
  std::size_t client = 0;
  platform::Call call;
  driver::Datum answer;
  bool faulty = false;
};

/// The calls of a Mac, as they were answered, in order. Few of them are ever read, and a copy of
/// each would cost as much as its answer: their arguments and answers are kept as bytes, of which
/// an entry is made when somebody asks for it.
class Trace {
 public:
  class Iterator;

  void add(Microseconds at, std::size_t client, const platform::Call& call,
           const driver::Datum& answer, bool faulty);

  /// Forgets that many of the oldest entries.
  void forget(std::size_t count);

  std::size_t size() const { return rows_.size(); }
  TraceEntry operator[](std::size_t index) const;

  /// The function of an entry, which needs no entry made.
  platform::Function functionAt(std::size_t index) const { return rows_[index].function; }

  Iterator begin() const;
  Iterator end() const;

 private:
  struct Row {
    Microseconds at = 0;
    std::size_t client = 0;
    platform::Function function{};
    bool faulty = false;
    std::size_t arguments = 0;  // how many
    std::size_t start = 0;      // of these, and behind them the answer, in the bytes
  };

  std::vector<Row> rows_;
  std::string bytes_;
};

/// Gives entries that are made on the way: they last no longer than the iterator stays.
class Trace::Iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = TraceEntry;
  using difference_type = std::ptrdiff_t;
  using pointer = void;
  using reference = TraceEntry;

  Iterator(const Trace& trace, std::size_t index) : trace_(&trace), index_(index) {}

  TraceEntry operator*() const { return (*trace_)[index_]; }
  Iterator& operator++() {
    ++index_;
    return *this;
  }
  friend bool operator==(const Iterator&, const Iterator&) = default;
  friend difference_type operator-(const Iterator& one, const Iterator& other) {
    return static_cast<difference_type>(one.index_) - static_cast<difference_type>(other.index_);
  }

 private:
  const Trace* trace_;
  std::size_t index_;
};

inline Trace::Iterator Trace::begin() const { return {*this, 0}; }
inline Trace::Iterator Trace::end() const { return {*this, size()}; }

}  // namespace simulator
