#include <gtest/gtest.h>

#include "tests/fuzz/request_lines.h"
#include "tests/support/inside.h"
#include "tests/support/service_desk.h"

/// What a client may send that is no request: one clear failure each, and an end in order.
namespace {

using namespace testing_support;

/// The last line of a service that was sent this after an open session; its other lines are right.
std::string lastLineAfter(const std::string& line) {
  TestMac mac(serviceDesk);
  const Result run = serve(mac, {openLine("n", "Notes"), line});
  const std::string before = served(0, {notesShared}).substr(2);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output.substr(0, before.size()), before);
  return run.output.substr(before.size());
}

std::string refused(const std::string& message) {
  return "{\"error\":\"" + message + "\",\"ok\":false}\n";
}

bool isUnavailable(const std::string& line) {
  return line.rfind("{\"error\":\"native screen sharing unavailable: ", 0) == 0 &&
         line.size() < 400 && line.find('\n') == line.size() - 1;
}

TEST(hostile_requests, of_megabytes_are_served_or_refused_like_others) {
  const std::string long_ = std::string(3'000'000, 'x');

  EXPECT_EQ(lastLineAfter(R"({"op":"refresh","session":")" + long_ + "\"}"),
            refused("unknown capture session"));
  EXPECT_TRUE(isUnavailable(lastLineAfter("{\"op\":" + std::string(3'000'000, '1') + "}")));
  EXPECT_TRUE(isUnavailable(lastLineAfter(std::string(3'000'000, ' '))));

  TestMac mac(serviceDesk);
  EXPECT_EQ(seen(serve(mac, {R"({"op":"open","session":")" + long_ + R"(","app":"Notes","more":")" +
                             long_ + "\"}"})),
            served(0, {notesShared}));
}

TEST(hostile_requests, that_nest_deeply_do_not_exhaust_anything) {
  for (const std::size_t depth : {501U, 100'000U, 1'000'000U}) {
    EXPECT_TRUE(isUnavailable(lastLineAfter(std::string(depth, '['))));
    EXPECT_TRUE(isUnavailable(lastLineAfter(std::string(depth, '[') + std::string(depth, ']'))));
    std::string objects;
    for (std::size_t i = 0; i < depth; ++i) objects += "{\"op\":";
    EXPECT_TRUE(isUnavailable(lastLineAfter(objects)));
  }
  EXPECT_EQ(lastLineAfter(std::string(500, '[') + std::string(500, ']')),
            refused("invalid capture service request"));
}

TEST(hostile_requests, with_a_key_twice_mean_one_of_the_two) {
  const std::string line =
      lastLineAfter(R"({"op":"refresh","op":"close","session":"unknown","session":"other"})");

  EXPECT_EQ(line, refused("unknown capture session"));
}

TEST(hostile_requests, with_bytes_that_are_no_text_are_refused) {
  const std::string nul("{\"op\":\"refresh\",\"session\":\"n\0\"}", 31);
  EXPECT_TRUE(isUnavailable(lastLineAfter(nul)));
  EXPECT_TRUE(isUnavailable(lastLineAfter(std::string("\0", 1))));
  for (const char* bytes : {"\x80", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC3"}) {
    EXPECT_EQ(lastLineAfter(std::string("{\"op\":\"refresh\",\"session\":\"") + bytes + "\"}"),
              refused("invalid capture service request"));
  }
}

TEST(hostile_requests, with_wrong_types_everywhere_are_refused) {
  for (const char* value : {"null", "true", "0", "-1.5", "[]", "{}", "[\"n\"]", "{\"n\":\"n\"}"}) {
    const std::string text = value;
    EXPECT_EQ(lastLineAfter("{\"op\":" + text + ",\"session\":\"n\"}"),
              refused("invalid capture service request"));
    EXPECT_EQ(lastLineAfter("{\"op\":\"refresh\",\"session\":" + text + "}"),
              refused("invalid capture service request"));
    EXPECT_EQ(lastLineAfter(R"({"op":"open","session":"o","app":)" + text + "}"),
              refused("invalid capture session"));
    EXPECT_EQ(lastLineAfter(R"({"op":"command","session":"n","args":)" + text + "}"),
              refused("invalid shared capture command"));
    EXPECT_EQ(lastLineAfter(R"({"op":"command","session":"n","args":["capture",)" + text + "]}"),
              refused("invalid shared capture command"));
  }
}

TEST(hostile_requests, that_are_generated_are_taken_as_what_they_are) {
  constexpr int lines = 20'000;
  fuzz::Random random(20'260'101);
  for (int i = 0; i < lines; ++i) {
    const std::string line = fuzz::requestLine(random);
    ASSERT_EQ(fuzz::complaintAbout(line), "") << line;
  }
}

TEST(hostile_requests, that_are_generated_end_a_service_in_order) {
  fuzz::Random random(7);
  for (int i = 0; i < 1'000; ++i) {
    const std::string line = fuzz::requestLine(random);
    TestMac mac(serviceDesk);
    const Result run = serve(mac, {openLine("notes", "Notes"), line});
    ASSERT_TRUE(run.status == 0 || run.status == 1) << line;
    ASSERT_EQ(run.output.back(), '\n') << line;
  }
}

}  // namespace
