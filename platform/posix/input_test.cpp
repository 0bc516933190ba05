#include "platform/posix/input.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class InputTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(pipe(ends_.data()), 0); }
  void TearDown() override {
    close(ends_[0]);
    end();
  }

  int reader() const { return ends_[0]; }
  void send(std::string_view bytes) const {
    EXPECT_EQ(write(ends_[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  void end() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }

  Lines linesOf(std::string_view bytes) {
    send(bytes);
    end();
    posix::Input input(reader());
    Lines lines;
    while (const auto line = input.readLine()) lines.push_back(*line);
    return lines;
  }

 private:
  std::array<int, 2> ends_ = {-1, -1};
};
using readLine = InputTest;
using readAvailable = InputTest;

const std::string large(std::size_t{1} << 20, 'x');

}  // namespace

TEST_F(readLine, gives_every_line_without_its_line_feed) {
  EXPECT_EQ(linesOf("one\n\ntwo\r\n"), (Lines{"one", "", "two\r"}));
}

TEST_F(readLine, gives_what_follows_the_last_line_feed) {
  EXPECT_EQ(linesOf("one\ntwo"), (Lines{"one", "two"}));
}

TEST_F(readLine, gives_nothing_for_an_empty_input) { EXPECT_EQ(linesOf(""), Lines{}); }

TEST_F(readLine, gives_bytes_as_they_came) {
  EXPECT_EQ(linesOf(std::string_view("a\0\xFF\n", 4)), Lines{std::string("a\0\xFF", 3)});
}

TEST_F(readLine, puts_together_a_line_that_comes_in_portions) {
  posix::Input input(reader());
  std::thread writing([this] {
    send(large);
    send("y\nz");
    end();
  });
  EXPECT_EQ(input.readLine(), large + "y");
  EXPECT_EQ(input.readLine(), "z");
  EXPECT_EQ(input.readLine(), std::nullopt);
  writing.join();
}

TEST_F(readLine, waits_while_a_non_blocking_pipe_is_empty) {
  ASSERT_EQ(fcntl(reader(), F_SETFL, O_NONBLOCK), 0);
  posix::Input input(reader());
  std::thread writing([this] { send("one\n"); });
  EXPECT_EQ(input.readLine(), "one");
  writing.join();
}

TEST_F(readAvailable, gives_what_has_come_and_nothing_at_the_end) {
  posix::Input input(reader());
  send("one\ntw");
  EXPECT_EQ(input.readAvailable(), "one\ntw");
  end();
  EXPECT_EQ(input.readAvailable(), "");
}

TEST_F(readAvailable, gives_what_was_read_beyond_the_line) {
  posix::Input input(reader());
  send("one\ntwo\nthr");
  EXPECT_EQ(input.readLine(), "one");
  EXPECT_EQ(input.readAvailable(), "two\nthr");
  send("ee\n");
  EXPECT_EQ(input.readLine(), "ee");
}

TEST(Input, a_descriptor_that_is_not_open_has_ended) {
  posix::Input input(-1);
  EXPECT_EQ(input.readLine(), std::nullopt);
  EXPECT_EQ(input.readAvailable(), "");
}
