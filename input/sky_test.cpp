#include "input/sky.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using Calls = std::vector<std::string>;

constexpr const char* skyDesk = R"(
    app Notes pid 41 bundle com.example.notes frontmost
)";

constexpr const char* openSkyLight =
    "loader.open-library \"/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight\" -> ";
constexpr const char* openApplicationServices =
    "loader.open-library "
    "\"/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices\" -> ";

/// How many of the eight entry points are there.
int presentEntryPoints() {
  return (Sky::postToPid() != nullptr) + (Sky::setField() != nullptr) +
         (Sky::setWindowLocation() != nullptr) + (Sky::postRecord() != nullptr) +
         (Sky::processForPid() != nullptr) + (Sky::frontProcess() != nullptr) +
         (Sky::processPID() != nullptr) + (Sky::axGetWindow() != nullptr);
}

/// The lookups of all entry points, each asked for three times. All but `missing` are there.
Calls lookups(TestMac& mac, int missing) {
  runInside(mac, [&] {
    for (int time = 0; time < 3; ++time) EXPECT_EQ(presentEntryPoints(), 8 - missing);
  });
  Calls lines;
  for (const auto function :
       {Function::openLibrary, Function::findSymbol, Function::findLoadedSymbol}) {
    for (const std::string& line : callsOf(mac, function)) lines.push_back(line);
  }
  return lines;
}

TEST(sky, looks_nothing_up_before_it_is_needed) {
  TestMac mac(skyDesk);
  EXPECT_EQ(runInside(mac, [] {}).calls, Calls{});
}

TEST(sky, looks_each_library_and_symbol_up_once) {
  TestMac mac(skyDesk);
  EXPECT_EQ(lookups(mac, 0),
            (Calls{openSkyLight + std::string("1"), openApplicationServices + std::string("2"),
                   "loader.find-symbol 1 \"SLEventPostToPid\" -> true",
                   "loader.find-symbol 1 \"SLEventSetIntegerValueField\" -> true",
                   "loader.find-symbol 1 \"CGEventSetWindowLocation\" -> false",
                   "loader.find-symbol 1 \"SLPSPostEventRecordTo\" -> true",
                   "loader.find-symbol 2 \"GetProcessForPID\" -> true",
                   "loader.find-symbol 2 \"GetFrontProcess\" -> true",
                   "loader.find-symbol 2 \"GetProcessPID\" -> true",
                   "loader.find-symbol 2 \"_AXUIElementGetWindow\" -> true",
                   "loader.find-loaded-symbol \"CGEventSetWindowLocation\" -> true"}));
}

TEST(sky, looks_an_absent_symbol_up_only_once) {
  for (const char* symbol :
       {"SLEventPostToPid", "SLEventSetIntegerValueField", "SLPSPostEventRecordTo",
        "GetProcessForPID", "GetFrontProcess", "GetProcessPID", "_AXUIElementGetWindow"}) {
    TestMac mac(std::string(skyDesk) + "    missing " + symbol + "\n");
    const Calls lines = lookups(mac, 1);
    EXPECT_EQ(lines.size(), 11U) << symbol;
    const std::string end = std::string(" \"") + symbol + "\" -> false";
    const auto absent = [&](const std::string& line) { return line.ends_with(end); };
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), absent), 1) << symbol;
  }
}

TEST(sky, looks_the_absent_window_location_up_once_in_each_place) {
  TestMac mac(std::string(skyDesk) + "    missing CGEventSetWindowLocation\n");
  const Calls lines = lookups(mac, 1);
  EXPECT_EQ(lines.size(), 11U);
  EXPECT_EQ(lines.back(), "loader.find-loaded-symbol \"CGEventSetWindowLocation\" -> false");
}

TEST(sky, looks_no_symbol_up_in_a_library_that_did_not_open) {
  TestMac mac(std::string(skyDesk) + "    missing SkyLight\n");
  EXPECT_EQ(lookups(mac, 4),
            (Calls{openSkyLight + std::string("-"), openApplicationServices + std::string("2"),
                   "loader.find-symbol 2 \"GetProcessForPID\" -> true",
                   "loader.find-symbol 2 \"GetFrontProcess\" -> true",
                   "loader.find-symbol 2 \"GetProcessPID\" -> true",
                   "loader.find-symbol 2 \"_AXUIElementGetWindow\" -> true"}));
}

TEST(sky, has_nothing_of_a_missing_application_services) {
  TestMac mac(std::string(skyDesk) + "    missing ApplicationServices\n");
  EXPECT_EQ(lookups(mac, 4),
            (Calls{openSkyLight + std::string("1"), openApplicationServices + std::string("-"),
                   "loader.find-symbol 1 \"SLEventPostToPid\" -> true",
                   "loader.find-symbol 1 \"SLEventSetIntegerValueField\" -> true",
                   "loader.find-symbol 1 \"CGEventSetWindowLocation\" -> false",
                   "loader.find-symbol 1 \"SLPSPostEventRecordTo\" -> true",
                   "loader.find-loaded-symbol \"CGEventSetWindowLocation\" -> true"}));
}

TEST(sky, takes_an_absence_for_final) {
  TestMac mac(skyDesk, {"loader.open-library 1 absent"});
  runInside(mac, [] {
    EXPECT_EQ(Sky::postToPid(), nullptr);
    EXPECT_EQ(Sky::postToPid(), nullptr);
    EXPECT_EQ(Sky::postRecord(), nullptr);
    EXPECT_NE(Sky::frontProcess(), nullptr);
  });
}

TEST(sky, looks_up_afresh_in_the_next_run) {
  TestMac mac(skyDesk, {"loader.open-library 1 absent"});
  runInside(mac, [] { EXPECT_EQ(Sky::postToPid(), nullptr); });
  runInside(mac, [] { EXPECT_NE(Sky::postToPid(), nullptr); });
}

}  // namespace
}  // namespace driver
