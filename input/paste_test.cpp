#include "input/paste.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

using Paths = std::vector<std::string>;

Arguments commandLine(const Paths& paths) {
  Arguments arguments = {"driver", "bg-paste-files", "Notes"};
  arguments.insert(arguments.end(), paths.begin(), paths.end());
  return arguments;
}

Paths pathsIn(const std::string& folder, const Paths& given) {
  TestMac mac("");
  return valueInside(mac, [&] {
    const FixedAnswer current(platform::Function::currentDirectory, driver::pack(folder));
    return filePaths(commandLine(given));
  });
}

TEST(filePaths, are_the_absolute_ones_as_they_stand) {
  TestMac mac("");
  const Result run = runInside(mac, [] {
    EXPECT_EQ(filePaths(commandLine({"/a/b.txt", "/", "/c/../d "})),
              (Paths{"/a/b.txt", "/", "/c/../d "}));
  });
  EXPECT_EQ(run.calls, Paths{});
}

TEST(filePaths, begin_at_the_current_directory_otherwise) {
  EXPECT_EQ(
      pathsIn("/Users/ada", {"b.txt", "/a", "../c", "~/d", "b/"}),
      (Paths{"/Users/ada/b.txt", "/a", "/Users/ada/../c", "/Users/ada/~/d", "/Users/ada/b/"}));
  EXPECT_EQ(pathsIn("/", {"b.txt"}), Paths{"/b.txt"});
}

TEST(filePaths, fail_without_a_current_directory) {
  TestMac mac("");
  const Result run = runInside(mac, [] {
    const FixedAnswer none(platform::Function::currentDirectory, driver::pack(std::string()));
    filePaths(commandLine({"b.txt"}));
  });
  EXPECT_EQ(seen(run), failure("no current directory for b.txt"));
}

TEST(filePaths, fail_for_one_that_was_no_well_formed_text) {
  TestMac mac("");
  const Result run = runInside(mac, [] {
    globals().repairedArgs = {3, 5};
    EXPECT_EQ(filePaths(commandLine({})), Paths{});
    filePaths({"driver", "bg-paste-files", "Notes", "/a\uFFFD", "/b"});
  });
  EXPECT_EQ(seen(run), failure("cannot paste \\/a\uFFFD"));
}

}  // namespace
}  // namespace driver
