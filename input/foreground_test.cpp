#include "input/focus.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

constexpr const char* foregroundDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
)";

std::optional<platform::Pid> foregroundOf(const std::string& world,
                                          std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  return valueInside(mac, [] { return foregroundPID(); });
}

TEST(foregroundPID, is_the_process_in_front) { EXPECT_EQ(foregroundOf(foregroundDesk), 40); }

TEST(foregroundPID, is_none_when_nothing_is_in_front) {
  EXPECT_EQ(foregroundOf("app Notes pid 41\n"), std::nullopt);
}

TEST(foregroundPID, is_none_when_the_system_refuses) {
  EXPECT_EQ(foregroundOf(foregroundDesk, {"private.front-process 1 error -600"}), std::nullopt);
  EXPECT_EQ(foregroundOf(foregroundDesk, {"private.process-pid 1 error -600"}), std::nullopt);
}

TEST(foregroundPID, asks_for_no_process_id_without_a_serial_number) {
  TestMac mac(foregroundDesk, {"private.front-process 1 error -600"});
  EXPECT_EQ(runInside(mac, [] { foregroundPID(); }).calls.back(), "private.front-process");
}

TEST(foregroundPID, is_none_without_its_entry_points) {
  const std::string world = foregroundDesk;
  EXPECT_EQ(foregroundOf(world + "    missing GetFrontProcess\n"), std::nullopt);
  EXPECT_EQ(foregroundOf(world + "    missing GetProcessPID\n"), std::nullopt);
  EXPECT_EQ(foregroundOf(world + "    missing ApplicationServices\n"), std::nullopt);
}

TEST(foregroundPID, asks_for_nothing_when_an_entry_point_is_missing) {
  TestMac mac(std::string(foregroundDesk) + "    missing GetProcessPID\n");
  EXPECT_EQ(runInside(mac, [] { foregroundPID(); }).calls,
            (std::vector<std::string>{"loader.open-library", "loader.find-symbol",
                                      "loader.find-symbol"}));
}

TEST(foregroundPID, asks_afresh_each_time) {
  TestMac mac(foregroundDesk, {"private.front-process 2 before front Notes"});
  runInside(mac, [] {
    EXPECT_EQ(foregroundPID(), 40);
    EXPECT_EQ(foregroundPID(), 41);
  });
}

}  // namespace
}  // namespace driver
