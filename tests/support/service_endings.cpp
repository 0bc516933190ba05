#include "tests/support/service_endings.h"

#include <gtest/gtest.h>

#include "tests/support/service_desk.h"

namespace testing_support {

namespace {

/// How many calls the whole session makes when nothing happens to it.
std::size_t callsOfWholeSession() {
  TestMac mac(serviceDesk);
  const Result run = serve(mac, wholeSession());
  EXPECT_EQ(seen(run), served(0, wholeSessionReplies()));
  return mac.desktop().trace().size();
}

}  // namespace

void atEveryCall(const std::string& happening,
                 const std::function<void(const TestMac&, const Result&)>& check) {
  const std::size_t calls = callsOfWholeSession();
  ASSERT_GT(calls, 200U);
  for (std::size_t call = 1; call <= calls; ++call) {
    const std::string fault = "any " + std::to_string(call) + " before " + happening;
    SCOPED_TRACE(fault);
    TestMac mac(serviceDesk, {fault});
    check(mac, serve(mac, wholeSession()));
    if (testing::Test::HasFailure()) return;
  }
}

bool isPrefixOfSession(const std::string& output) {
  const std::string whole = served(0, wholeSessionReplies()).substr(2);
  return whole.compare(0, output.size(), output) == 0;
}

}  // namespace testing_support
