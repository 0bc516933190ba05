#include "platform/process.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <array>
#include <string>
#include <vector>

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/dispatch.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/languages.h"
#include "platform/macos/standins/strings.h"
#include "tests/support/child_process.h"

namespace {

using process::Signal;
using Tags = std::vector<std::string>;

class Process : public standins::AdapterTest {};
using process_exit = Process;
using dieBySignal = Process;
using handleSignals = Process;
using isIgnored = Process;
using onEndingSignal = Process;
using preferredLanguages = Process;

}  // namespace

TEST_F(process_exit, ends_the_process_with_the_status_after_its_handlers) {
  const posix::Ending ending = posix::endingOf([](int out) {
    process::onExit([out] {
      if (write(out, "handled", 7) != 7) _exit(1);
    });
    process::exit(3);
  });
  EXPECT_EQ(ending, (posix::Ending{.exitStatus = 3, .output = "handled"}));
}

TEST_F(dieBySignal, ends_the_process_by_that_signal) {
  const posix::Ending ending = posix::endingOf([](int) { process::dieBySignal(Signal::hangUp); });
  EXPECT_EQ(ending.signal, SIGHUP);
}

TEST_F(handleSignals, calls_the_handler_on_the_main_queue_for_each_signal) {
  const posix::Ending ending = posix::endingOf([](int out) {
    std::string told;
    const std::array watched = {Signal::terminate, Signal::interrupt};
    process::handleSignals(
        watched, [&](Signal signal) { told += std::to_string(static_cast<int>(signal)) + " "; });
    standins::signalArrives(SIGINT);
    standins::signalArrives(SIGHUP);
    told += "served: ";
    standins::serveMainQueue();
    standins::signalArrives(SIGTERM);
    standins::serveMainQueue();
    _exit(write(out, told.data(), told.size()) < 0);
  });
  EXPECT_EQ(ending, (posix::Ending{.exitStatus = 0, .output = "served: 2 15 "}));
}

TEST_F(handleSignals, keeps_the_signals_from_ending_the_process) {
  const posix::Ending ending = posix::endingOf([](int) {
    const std::array watched = {Signal::terminate, Signal::interrupt, Signal::hangUp};
    process::handleSignals(watched, [](Signal) {});
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) raise(number);
    _exit(5);
  });
  EXPECT_EQ(ending.exitStatus, 5);
}

TEST_F(isIgnored, tells_each_signal_by_itself) {
  const posix::Ending ending = posix::endingOf([](int) {
    signal(SIGTERM, SIG_DFL);
    signal(SIGINT, SIG_IGN);
    _exit(process::isIgnored(Signal::interrupt) && !process::isIgnored(Signal::terminate) ? 0 : 1);
  });
  EXPECT_EQ(ending.exitStatus, 0);
}

TEST_F(onEndingSignal, tells_the_signal_that_came) {
  const posix::Ending ending = posix::endingOf([](int out) {
    signal(SIGHUP, SIG_DFL);
    process::onEndingSignal({Signal::terminate, Signal::hangUp}, [out](Signal told) {
      _exit(told == Signal::hangUp && write(out, "told", 4) == 4 ? 7 : 1);
    });
    kill(getpid(), SIGHUP);
    for (;;) pause();
  });
  EXPECT_EQ(ending, (posix::Ending{.exitStatus = 7, .output = "told"}));
}

TEST_F(preferredLanguages, gives_the_tags_in_order) {
  standins::setPreferredLanguages(
      standins::array({standins::string(u"zh-Hans-CN"), standins::string(u"en-GB")}));
  EXPECT_EQ(process::preferredLanguages(), (Tags{"zh-Hans-CN", "en-GB"}));
}

TEST_F(preferredLanguages, leaves_out_what_is_no_text) {
  standins::setPreferredLanguages(
      standins::array({standins::number(std::int64_t{7}), standins::string(u"en")}));
  EXPECT_EQ(process::preferredLanguages(), Tags{"en"});
  standins::setPreferredLanguages(nullptr);
  EXPECT_EQ(process::preferredLanguages(), Tags{});
}
