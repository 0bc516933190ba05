#include <gtest/gtest.h>

#include "mac.h"

// A process that takes its time to end, while its flows still run.

namespace joined {
namespace {

constexpr const char* slowExitDesk = R"(
display 1 1440x900 scale 1
app Safari pid 40 bundle com.example.browser frontmost
    window 5 "Start" at 0,25 size 400x400
app Notes pid 41 bundle com.example.notes
    window 7 "Notes" at 100,80 size 800x600
)";

TEST(slow_exit, leaves_the_last_line_of_a_service_the_last) {
  const Folder folder;
  const ServedMac mac(slowExitDesk, {});
  for (int run = 0; run < 20; ++run) {
    Process service(driverCommand({"capture-service", folder.path("lock")}),
                    mac.environment({{"LD_PRELOAD", SLOW_EXIT_LIBRARY}}));
    service.readLine();
    // Both at once: the flow that hears of stopped sharing has then just begun.
    service.write(
        "{\"op\":\"open\",\"session\":\"n\",\"app\":\"Notes\"}\n"
        "{\"op\":\"refresh\",\"session\":\"unknown\"}\n");
    service.readLine();
    EXPECT_EQ(seen(service.finish()), "1 {\"error\":\"unknown capture session\",\"ok\":false}\n");
  }
}

}  // namespace
}  // namespace joined
