#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mac.h"

namespace joined {

inline constexpr const char* desk = R"(
display 1 1440x900 scale 1
app Notes pid 41 bundle com.example.notes frontmost
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,130 size 700x400 focused
)";

inline constexpr const char* firstLine = "{\"covers\":1,\"keepAwake\":true,\"ok\":true}";

/// A guard on a Mac of its own, which has written its first line.
class Guarded {
 public:
  explicit Guarded(const std::string& world = desk, const Environment& variables = {})
      : mac_(world), guard_(driverCommand({"lock-guard"}), mac_.environment(variables)) {
    EXPECT_EQ(guard_.readLine(), firstLine);
  }

  const ServedMac& mac() const { return mac_; }
  Process& process() { return guard_; }

  /// Lets something happen to the Mac.
  void happen(const std::vector<std::string>& words) const {
    EXPECT_EQ(seen(mac_.command(words)), "0 {\"ok\":true}\n");
  }

  /// Lets the guard's last half second pass, and waits for its end.
  std::string end() {
    // It sleeps by now, or will: time stands still until it is told to move.
    mac_.command({"advance", "1s"});
    return seen(guard_.finish());
  }

  bool isLocked() const {
    return mac_.tell({"state"}).find("\"locked\":true") != std::string::npos;
  }

  std::string violations() const { return mac_.command({"violations"}).output; }

 private:
  ServedMac mac_;
  Process guard_;
};

}  // namespace joined
