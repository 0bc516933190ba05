#include "platform/posix/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

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
