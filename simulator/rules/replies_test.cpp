#include "simulator/rules/replies.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

using Sentences = std::vector<std::string>;

Sentences faultsOf(const std::string& output) { return readReply(output).faults; }

TEST(readReply, takes_canonical_lines) {
  EXPECT_EQ(faultsOf("{\"ok\":true}\n"), Sentences{});
  EXPECT_TRUE(readReply("{\"ok\":true}\n").ok);
  EXPECT_EQ(faultsOf("{\"error\":\"no \\/ way\",\"ok\":false}\n"), Sentences{});
  EXPECT_FALSE(readReply("{\"error\":\"x\",\"ok\":false}\n").ok);
  EXPECT_EQ(faultsOf("{\"ok\":true,\"x\":[1,-2.5,null,{\"a\":\"ü\\n\"}]}\n"), Sentences{});
}

TEST(readReply, wants_exactly_one_line) {
  const Sentences broken = {"the output is not exactly one line"};
  EXPECT_EQ(faultsOf(""), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true}"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true}\n{\"ok\":true}\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true}\n\n"), broken);
  EXPECT_EQ(faultsOf("\n{\"ok\":true}"), broken);
}

TEST(readReply, wants_an_object) {
  const Sentences broken = {"the output is no JSON object"};
  EXPECT_EQ(faultsOf("hello\n"), broken);
  EXPECT_EQ(faultsOf("[true]\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true,\"x\":\"\xFF\"}\n"), broken);
}

TEST(readReply, wants_the_canonical_form) {
  const Sentences broken = {"the reply is not in canonical form"};
  EXPECT_EQ(faultsOf("{\"ok\": true}\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true,\"error\":\"x\"}\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true,\"path\":\"a/b\"}\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true,\"ok\":true}\n"), broken);
  EXPECT_EQ(faultsOf("{\"ok\":true,\"x\":\"\\u00fc\"}\n"), broken);
}

TEST(readReply, wants_a_boolean_ok_and_tells_whether_a_failure_says_why) {
  EXPECT_EQ(faultsOf("{}\n"), Sentences{"the reply has no \"ok\""});
  EXPECT_EQ(faultsOf("{\"ok\":1}\n"), Sentences{"the reply has no \"ok\""});
  EXPECT_FALSE(readReply("{\"ok\":false}\n").saysWhy);
  EXPECT_FALSE(readReply("{\"error\":1,\"ok\":false}\n").saysWhy);
  EXPECT_TRUE(readReply("{\"error\":\"x\",\"ok\":false}\n").saysWhy);
  EXPECT_TRUE(readReply("{\"axError\":-25204,\"ok\":false}\n").saysWhy);
}

std::optional<Pid> serviceOf(const char* value) {
  Client client;
  client.environment["CU_CAPTURE_PID"] = value;
  return servicePid(client);
}

TEST(servicePid, is_a_positive_number) {
  EXPECT_EQ(serviceOf("900"), 900);
  EXPECT_EQ(serviceOf("+900"), 900);
  for (const char* value : {"", "0", "-1", "abc", "900 ", "99999999999"}) {
    EXPECT_EQ(serviceOf(value), std::nullopt) << value;
  }
  EXPECT_EQ(servicePid(Client()), std::nullopt);
}

bool admits(const char* scope, const char* title) {
  Client client;
  client.environment["CU_WINDOW"] = scope;
  return titleInScope(client, title);
}

TEST(lineFaults, takes_whole_lines_of_which_the_first_has_ok) {
  EXPECT_EQ(lineFaults(""), Sentences{});
  EXPECT_EQ(lineFaults("{\"ok\":true}\n"), Sentences{});
  EXPECT_EQ(lineFaults("{\"ok\":true}\n{\"at\":5,\"input\":\"key\"}\n{\"ok\":false}\n"),
            Sentences{});
}

TEST(lineFaults, finds_each_line_that_is_none) {
  EXPECT_EQ(lineFaults("{\"at\":5}\n"), Sentences{"the reply has no \"ok\""});
  EXPECT_EQ(lineFaults("{\"ok\":true}\n{\"ok\":tr"), Sentences{"the last line is not whole"});
  EXPECT_EQ(lineFaults("{\"ok\":true}\n\n{\"b\":1,\"a\":2}\n"),
            (Sentences{"the output is no JSON object", "the reply is not in canonical form"}));
  EXPECT_EQ(lineFaults("{\"ok\":true}{\"ok\":true}\n"), Sentences{"the output is no JSON object"});
}

TEST(isLongLived, tells_which_commands_write_more_than_a_line) {
  for (const char* command : {"lock-guard", "keep-awake", "watch-input", "capture-service"}) {
    EXPECT_TRUE(isLongLived(command)) << command;
  }
  for (const char* command : {"", "lock-now", "capture", "bg-click"}) {
    EXPECT_FALSE(isLongLived(command)) << command;
  }
}

TEST(titleInScope, compares_pieces_of_the_title_in_lower_case) {
  EXPECT_TRUE(admits("Notes", "NOTES"));
  EXPECT_TRUE(admits("notes", "Draft \u2014 Notes \u2014 Work"));
  EXPECT_TRUE(admits("notes", "  Notes\t"));
  EXPECT_TRUE(admits("notes", "[Extension Development Host] Notes"));
  EXPECT_FALSE(admits("notes", "My Notes"));
  EXPECT_FALSE(admits("notes", "Notes - Work"));
  EXPECT_FALSE(admits("draft notes", "Draft \u2014 Notes"));
}

TEST(titleInScope, lets_pass_what_it_cannot_or_need_not_judge) {
  EXPECT_TRUE(admits("", "Anything"));
  EXPECT_TRUE(admits("notes", ""));
  EXPECT_TRUE(admits("\u00FCbersicht", "Other"));
}

}  // namespace

}  // namespace simulator
