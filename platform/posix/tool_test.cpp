#include "platform/posix/tool.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

namespace {

std::optional<std::string> shell(const std::string& script) {
  return posix::toolOutput("/bin/sh", {"-c", script});
}

}  // namespace

TEST(toolOutput, gives_every_byte_that_the_tool_writes) {
  EXPECT_EQ(posix::toolOutput("/usr/bin/printf", {"%s,%s", "a b", "\xC3\xA9\n"}), "a b,\xC3\xA9\n");
  EXPECT_EQ(shell("head -c 300000 /dev/zero"), std::string(300000, '\0'));
}

TEST(toolOutput, gives_the_output_whatever_the_status) {
  EXPECT_EQ(shell("printf out; exit 3"), "out");
  EXPECT_EQ(shell("printf out; kill -9 $$"), "out");
}

TEST(toolOutput, discards_standard_error) { EXPECT_EQ(shell("printf out; printf err >&2"), "out"); }

TEST(toolOutput, gives_the_tool_nothing_to_read) { EXPECT_EQ(shell("cat; printf end"), "end"); }

TEST(toolOutput, a_tool_that_cannot_be_started_has_none) {
  EXPECT_EQ(posix::toolOutput("/nowhere/tool", {}), std::nullopt);
  EXPECT_EQ(posix::toolOutput("/dev/null", {}), std::nullopt);
}

TEST(toolOutput, leaves_no_descriptor_open) {
  const int before = dup(STDIN_FILENO);
  close(before);
  shell("true");
  const int after = dup(STDIN_FILENO);
  close(after);
  EXPECT_EQ(after, before);
}

TEST(toolOutput, signals_do_to_the_tool_what_they_do_by_default) {
  const auto previous = signal(SIGPIPE, SIG_IGN);
  EXPECT_EQ(shell("printf a; kill -PIPE $$; printf b"), "a");
  signal(SIGPIPE, previous);
}
