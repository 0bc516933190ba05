#include <gtest/gtest.h>

#include "mac.h"

namespace joined {
namespace {

std::string refusal(const std::string& message) {
  return "1 {\"error\":\"" + message + "\",\"ok\":false}\n";
}

TEST(usage, is_explained) {
  const std::string path = simulatedMacPath();
  EXPECT_EQ(
      seen(run({path})),
      refusal(
          "usage: simulated-mac "
          "run|serve|stop|list|view|report|check|import|screenshot|snapshot|state|tree|value|"
          "journal|trace|"
          "violations|fault|failed|wait|advance|clock|"
          "lock|unlock|leave|return|quit|end|front|hang|recover|in|user|remove|connect|disconnect|"
          "replug|request|end-loop|withdraw|silence|invalidate|disable ...; "
          "\\\"simulated-mac --help\\\" tells more"));
  EXPECT_EQ(seen(run({path, "run", "world"})),
            refusal("usage: simulated-mac run [--virtual [--sleep]] [--seed N] [--record DIR "
                    "[--no-pictures]] [--snapshot FILE] WORLD -- COMMAND [ARGUMENT]..."));
  EXPECT_EQ(seen(run({path, "run", "world", "--"})),
            refusal("usage: simulated-mac run [--virtual [--sleep]] [--seed N] [--record DIR "
                    "[--no-pictures]] [--snapshot FILE] WORLD -- COMMAND [ARGUMENT]..."));
  EXPECT_EQ(
      seen(run({path, "serve", "--frob", "world"})),
      "1 STANDARD ERROR: {\"error\":\"usage: simulated-mac serve [--virtual] [--seed N] "
      "[--record DIR "
      "[--no-pictures]] [--socket NAME] [--view [PORT]] [--until-closed] WORLD\",\"ok\":false}\n");
  EXPECT_EQ(seen(run({path, "screenshot"})), refusal("usage: simulated-mac screenshot OUT.png"));
  EXPECT_EQ(seen(run({path, "advance"})), refusal("usage: simulated-mac advance TIME"));
}

TEST(usage, of_a_word_that_is_nearly_a_command_says_which) {
  const auto beginning = [](const std::string& word) {
    const std::string output = run({simulatedMacPath(), word}).output;
    return output.substr(0, output.find("; usage"));
  };

  EXPECT_EQ(beginning("jurnal"), "{\"error\":\"unknown command: jurnal; did you mean 'journal'?");
  EXPECT_EQ(beginning("recovr"), "{\"error\":\"unknown command: recovr; did you mean 'recover'?");
  EXPECT_EQ(beginning("--hepl"), "{\"error\":\"unknown command: --hepl; did you mean '--help'?");
  EXPECT_EQ(beginning("dance"), "{\"error\":\"unknown command: dance");
}

}  // namespace
}  // namespace joined
