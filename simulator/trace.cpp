#include "simulator/trace.h"

#include <string_view>
#include <utility>

namespace simulator {

using driver::Datum;

void Trace::add(Microseconds at, std::size_t client, const platform::Call& call,
                const Datum& answer, bool faulty) {
  rows_.push_back({at, client, call.function, faulty, call.arguments.size(), bytes_.size()});
  for (const Datum& argument : call.arguments) driver::encode(argument, bytes_);
  driver::encode(answer, bytes_);
}

void Trace::forget(std::size_t count) {
  const std::size_t start = count < rows_.size() ? rows_[count].start : bytes_.size();
  rows_.erase(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(count));
  bytes_.erase(0, start);
  for (Row& row : rows_) row.start -= start;
}

TraceEntry Trace::operator[](std::size_t index) const {
  const Row& row = rows_[index];
  TraceEntry entry{row.at, row.client, {row.function, {}}, {}, row.faulty};
  std::string_view bytes = std::string_view(bytes_).substr(row.start);
  entry.call.arguments.reserve(row.arguments);
  for (std::size_t i = 0; i < row.arguments; ++i) {
    entry.call.arguments.push_back(driver::decode(bytes));
  }
  entry.answer = driver::decode(bytes);
  return entry;
}

}  // namespace simulator
