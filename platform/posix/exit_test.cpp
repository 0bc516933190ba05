#include "platform/posix/exit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>
#include <thread>

#include "platform/posix/child_process.h"

namespace {

using posix::Ending;
using posix::endingOf;

void say(int descriptor, std::string_view text) {
  EXPECT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

}  // namespace

TEST(exit, ends_the_process_with_the_status) {
  EXPECT_EQ(endingOf([](int) { posix::exit(3); }).exitStatus, 3);
}

TEST(exit, runs_each_handler_once_the_newest_first) {
  EXPECT_EQ(endingOf([](int out) {
              posix::onExit([out] { say(out, "first "); });
              posix::onExit([out] { say(out, "second "); });
              posix::exit(3);
            }),
            (Ending{.exitStatus = 3, .output = "second first "}));
}

TEST(exit, runs_handlers_on_the_thread_that_exits) {
  EXPECT_EQ(endingOf([](int out) {
              std::thread([out] {
                const std::thread::id exiting = std::this_thread::get_id();
                posix::onExit([out, exiting] {
                  say(out, std::this_thread::get_id() == exiting ? "same" : "other");
                });
                posix::exit(3);
              }).join();
            }),
            (Ending{.exitStatus = 3, .output = "same"}));
}

TEST(exit, may_come_from_a_handler_and_ends_the_process_there) {
  EXPECT_EQ(endingOf([](int out) {
              posix::onExit([out] { say(out, "never"); });
              posix::onExit([] { posix::exit(4); });
              posix::exit(3);
            }),
            (Ending{.exitStatus = 4, .output = ""}));
}

TEST(exit, may_come_from_two_threads_at_once) {
  EXPECT_EQ(endingOf([](int) {
              std::thread([] { posix::exit(3); }).detach();
              posix::exit(3);
            }).exitStatus,
            3);
}
