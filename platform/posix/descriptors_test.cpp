#include "platform/posix/descriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

struct Pipe {
  Pipe() { EXPECT_EQ(pipe(ends.data()), 0); }
  ~Pipe() {
    closeReader();
    closeWriter();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends[0]; }
  int writer() const { return ends[1]; }
  void closeReader() { closeEnd(ends[0]); }
  void closeWriter() { closeEnd(ends[1]); }

  std::string readToEnd() const {
    std::string all;
    std::array<char, 4096> buffer = {};
    for (ssize_t count = 0; (count = read(reader(), buffer.data(), buffer.size())) > 0;) {
      all.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return all;
  }

 private:
  static void closeEnd(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }

  std::array<int, 2> ends = {-1, -1};
};

// More than a pipe holds, so that a writer has to wait for its reader.
const std::string large(std::size_t{1} << 20, 'x');

std::string readWhileWriting(Pipe& pipe, std::string_view bytes) {
  std::string received;
  std::thread reading([&] { received = pipe.readToEnd(); });
  EXPECT_TRUE(posix::writeAll(pipe.writer(), bytes));
  pipe.closeWriter();
  reading.join();
  return received;
}

}  // namespace

TEST(writeAll, writes_every_byte_to_a_pipe) {
  Pipe pipe;
  EXPECT_EQ(readWhileWriting(pipe, large), large);
}

TEST(writeAll, waits_while_a_non_blocking_pipe_is_full) {
  Pipe pipe;
  ASSERT_EQ(fcntl(pipe.writer(), F_SETFL, O_NONBLOCK), 0);
  EXPECT_EQ(readWhileWriting(pipe, large), large);
}

TEST(writeAll, writes_nothing_for_no_bytes) { EXPECT_TRUE(posix::writeAll(-1, "")); }

TEST(writeAll, fails_when_the_descriptor_is_not_open) { EXPECT_FALSE(posix::writeAll(-1, "x")); }

TEST(writeAll, fails_when_the_reader_has_gone_and_the_signal_is_ignored) {
  Pipe pipe;
  pipe.closeReader();
  const auto previous = signal(SIGPIPE, SIG_IGN);
  EXPECT_FALSE(posix::writeAll(pipe.writer(), "x"));
  signal(SIGPIPE, previous);
}

TEST(writeReady, writes_as_much_as_goes_without_waiting) {
  Pipe pipe;
  EXPECT_EQ(posix::writeReady(pipe.writer(), "a line\n"), 7U);
  const std::size_t taken = posix::writeReady(pipe.writer(), large);
  EXPECT_GT(taken, 4096U);
  EXPECT_LT(taken, large.size());
  EXPECT_EQ(posix::writeReady(pipe.writer(), "x"), 0U);
  pipe.closeWriter();
  EXPECT_EQ(pipe.readToEnd(), "a line\n" + large.substr(0, taken));
}

TEST(writeReady, leaves_it_to_others_to_say_why_nothing_goes) {
  signal(SIGPIPE, SIG_IGN);
  Pipe pipe;
  pipe.closeReader();
  EXPECT_EQ(posix::writeReady(pipe.writer(), "x"), 0U);
  EXPECT_EQ(posix::writeReady(-1, "x"), 0U);
  signal(SIGPIPE, SIG_DFL);
}

TEST(writeWithin, writes_every_byte_when_the_reader_takes_them) {
  Pipe pipe;
  std::string received;
  std::thread reading([&] { received = pipe.readToEnd(); });
  EXPECT_TRUE(posix::writeWithin(pipe.writer(), large, 60'000'000));
  pipe.closeWriter();
  reading.join();
  EXPECT_EQ(received, large);
}

TEST(writeWithin, gives_up_when_the_reader_takes_nothing) {
  Pipe pipe;
  EXPECT_FALSE(posix::writeWithin(pipe.writer(), large, 1'000));
}

TEST(writeWithin, writes_nothing_without_time) {
  Pipe pipe;
  EXPECT_FALSE(posix::writeWithin(pipe.writer(), "x", 0));
  pipe.closeWriter();
  EXPECT_EQ(pipe.readToEnd(), "");
}

TEST(writeWithin, fails_when_the_descriptor_is_not_open_or_has_no_reader) {
  EXPECT_FALSE(posix::writeWithin(-1, "x", 1'000));
  Pipe pipe;
  pipe.closeReader();
  const auto previous = signal(SIGPIPE, SIG_IGN);
  EXPECT_FALSE(posix::writeWithin(pipe.writer(), "x", 60'000'000));
  signal(SIGPIPE, previous);
}

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

TEST(Input, comes_by_whatever_reads_it) {
  std::vector<std::string> portions = {"", "\nthr", "wo", "one\nt"};
  posix::Input input([&] {
    std::string portion = portions.back();
    portions.pop_back();
    return portion;
  });
  EXPECT_EQ(input.readLine(), "one");
  EXPECT_EQ(input.readLine(), "two");
  EXPECT_EQ(input.readAvailable(), "thr");
  EXPECT_EQ(input.readAvailable(), "");
}

TEST(Input, a_descriptor_that_is_not_open_has_ended) {
  posix::Input input(-1);
  EXPECT_EQ(input.readLine(), std::nullopt);
  EXPECT_EQ(input.readAvailable(), "");
}

}  // namespace
