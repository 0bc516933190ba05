#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/ax.h"
#include "platform/call.h"
#include "tests/support/simulated_run.h"

/// Functions of the product by themselves, on a simulated Mac.
namespace testing_support {

/// Runs `function` in place of a command, after the start-up of a run; inside this process,
/// whatever the mode. The calls are those of the function alone. Unless it ends the process, the
/// status is 0 and the rules for the end of a run (its reply, its buttons, its focus) are not
/// checked.
Result runInside(TestMac& mac, const std::function<void()>& function,
                 const Environment& environment = {});

/// The same for a function that acts on elements, which commands do only once they have found the
/// session usable: that is asked before, and is none of the function's calls.
Result runActing(TestMac& mac, const std::function<void()>& function);

/// As `runInside` for a function's value, which must not refer to the simulated Mac. A function
/// that ends the process is a test failure.
template <class Function>
auto valueInside(TestMac& mac, const Function& function, const Environment& environment = {}) {
  std::optional<std::invoke_result_t<Function>> value;
  const Result run = runInside(
      mac, [&] { value = function(); }, environment);
  if (!value) ADD_FAILURE() << "the process ended: " << seen(run);
  return value.value_or(std::invoke_result_t<Function>{});
}

/// The element of an application with this label, or the title of a window; a test failure when
/// there is none.
ax::Element elementOf(const TestMac& mac, std::string_view application, std::string_view label);

/// The application element of the application with this name.
ax::Element applicationOf(const TestMac& mac, std::string_view application);

/// The calls made so far of one function, with arguments and answers: as `traceLine` has them, from
/// the function's name on.
std::vector<std::string> callsOf(const TestMac& mac, platform::Function function);

/// The event records posted so far, in order, as the window server got them.
std::vector<std::string> postedRecords(const TestMac& mac);

/// While it lives, all calls of one function get the same answer, and are not made. It is used
/// inside a function that `runInside` runs.
class FixedAnswer : public platform::Channel {
 public:
  FixedAnswer(platform::Function function, driver::Datum answer);
  ~FixedAnswer() override;

  driver::Datum call(platform::Call call) override;
  platform::Pid ownPid() const override;
  void startFlow(std::function<void()> body) override;
  void watchSignals(const std::vector<int>& numbers) override;
  void awaitEndingSignal(const std::vector<int>& numbers,
                         std::function<void(int)> handler) override;
  bool keepsOutput() const override;
  [[noreturn]] void exit(int status) override;
  [[noreturn]] void dieBySignal(int signal) override;

 private:
  platform::Channel& underneath_;
  platform::Function function_;
  driver::Datum answer_;
};

}  // namespace testing_support
