#include "simulator/trace.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace simulator {

using driver::Datum;
using platform::Call;
using platform::Function;

namespace {

Trace ofThree() {
  Trace trace;
  trace.add(1, 0, {Function::sleep, {Datum(std::int64_t{12'000})}}, Datum(), false);
  trace.add(2, 1, {Function::environment, {Datum(std::string("HOME"))}},
            Datum(Datum::List{Datum(std::string("/"))}), true);
  trace.add(3, 0, {Function::exit, {Datum(std::int64_t{1}), Datum(true)}}, Datum(0.5), false);
  return trace;
}

}  // namespace

TEST(Trace, gives_calls_back_as_they_were) {
  const Trace trace = ofThree();
  ASSERT_EQ(trace.size(), 3U);
  const TraceEntry entry = trace[1];
  EXPECT_EQ(entry.at, 2);
  EXPECT_EQ(entry.client, 1U);
  EXPECT_EQ(entry.call.function, Function::environment);
  EXPECT_EQ(entry.call.arguments, Datum::List{Datum(std::string("HOME"))});
  EXPECT_EQ(entry.answer, Datum(Datum::List{Datum(std::string("/"))}));
  EXPECT_TRUE(entry.faulty);
  EXPECT_EQ(trace.functionAt(2), Function::exit);
}

TEST(Trace, is_gone_through_in_order) {
  const Trace trace = ofThree();
  std::string seen;
  for (const TraceEntry& entry : trace) {
    seen += std::to_string(entry.at) + ":" + std::to_string(entry.call.arguments.size()) + " ";
  }
  EXPECT_EQ(seen, "1:1 2:1 3:2 ");
  EXPECT_EQ(trace.end() - trace.begin(), 3);
}

TEST(Trace, forgets_the_oldest) {
  Trace trace = ofThree();
  trace.forget(1);
  trace.add(4, 0, {Function::sleep, {Datum(std::int64_t{5})}}, Datum(true), false);
  ASSERT_EQ(trace.size(), 3U);
  EXPECT_EQ(trace[0].call.arguments, Datum::List{Datum(std::string("HOME"))});
  EXPECT_EQ(trace[1].answer, Datum(0.5));
  EXPECT_EQ(trace[2].answer, Datum(true));
  trace.forget(3);
  EXPECT_EQ(trace.size(), 0U);
}

}  // namespace simulator
