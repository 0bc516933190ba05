#include "tests/soak/case.h"

#include <gtest/gtest.h>

#include "simulator/text/error.h"
#include "tests/soak/play.h"
#include "tests/soak/shrink.h"
#include "tests/support/temporary_folder.h"

namespace {

using namespace soak;

constexpr const char* notesWorld = R"(app "Notes" pid 41
    window 7 "Inbox" at 0,0 size 9x9
        AXButton "Send" press: quit
    window 8 "Other" at 0,0 size 9x9
at 100us lock
)";

constexpr const char* notesSteps = R"(turns 7
fault private.post 3+ refused
fault any 7 before user copy "a b"
run "windows" "Notes"
    after 200us
    with CU_WINDOW "in\xFF\n"
beside "capture-service" "FOLDER/lock"
    at 10us input "{}\n"
    at 20us signal 15
    at 30us end of input
)";

TEST(a_case, reads_back_as_it_was_written) {
  const Case one = readCase(notesWorld, notesSteps);

  EXPECT_EQ(worldText(one), notesWorld);
  EXPECT_EQ(stepsText(one), notesSteps);
  EXPECT_EQ(one.steps.at(0).environment.at("CU_WINDOW"), "in\xFF\n");
}

TEST(a_case, is_refused_when_a_line_makes_no_sense) {
  EXPECT_THROW(readCase("", "jump\n"), simulator::WorldError);
  EXPECT_THROW(readCase("", "run \"a\"\n    beyond 3us\n"), simulator::WorldError);
}

TEST(a_case, that_names_a_file_without_a_folder_writes_into_its_own) {
  const testing_support::TemporaryFolder folder;
  const Case one = readCase(R"(app "Notes" pid 41
    window 7 "Inbox" at 0,0 size 300x200
)",
                            "run \"capture\" \"Notes\" \"nan\"\n");

  EXPECT_EQ(play(one, folder.path("")).steps.at(0).status, 0);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"nan"});
}

TEST(shrunk, leaves_what_the_failure_needs_and_no_more) {
  const auto fails = [](const Case& one) {
    const bool hasButton = worldText(one).find("AXButton") != std::string::npos;
    return hasButton && stepsText(one).find("signal 15") != std::string::npos;
  };
  const Case smallest = shrunk(readCase(notesWorld, notesSteps), fails);

  EXPECT_EQ(worldText(smallest),
            "app \"Notes\" pid 41\n    window 7 \"Inbox\" at 0,0 size 9x9\n"
            "        AXButton \"Send\" press: quit\n");
  EXPECT_EQ(stepsText(smallest), "run \"capture-service\"\n    at 20us signal 15\n");
}

int timesIn(const std::string& text, const std::string& part) {
  int times = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++times;
  return times;
}

TEST(shrunk, leaves_of_long_texts_what_the_failure_needs) {
  const std::string filler = "\\xEF\\xBC\\xB3 \\n\\\"and so on and on and on and on and on ";
  const std::string text = "\"" + filler + "key" + filler + "\"";
  const Case whole =
      readCase("app " + text + " pid 41\n    window 7 \"short\" at 0,0 size 9x9\n",
               "fault any 7 before user copy " + text + "\nrun \"bg-type\" " + text +
                   "\n    with CU_WINDOW " + text + "\n    at 10us input " + text + "\n");
  const auto fails = [](const Case& one) {
    const std::string world = worldText(one);
    return timesIn(world, "key") == 1 && timesIn(world, "short") == 1 &&
           timesIn(stepsText(one), "key") == 4;
  };
  const Case smallest = shrunk(whole, fails);

  EXPECT_EQ(worldText(smallest), "app \"key\" pid 41\n    window 7 \"short\" at 0,0 size 9x9\n");
  EXPECT_EQ(stepsText(smallest),
            "fault any 7 before user copy \"key\"\nrun \"bg-type\" \"key\"\n"
            "    with CU_WINDOW \"key\"\n    at 10us input \"key\"\n");
}

}  // namespace
