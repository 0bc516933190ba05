#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "guard/guard_end.h"
#include "guard/lock_guard.h"
#include "guard/screen_lock.h"
#include "main/globals.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "tests/support/channels.h"
#include "tests/support/guarded.h"
#include "tests/support/inside.h"

// docs/GUARD_EXITS.md lists every line by which a guard can end, with what shows that the screen is
// locked before. The list is held against the sources.

namespace {

namespace fs = std::filesystem;

using testing_support::Mode;
using testing_support::Result;
using testing_support::TestMac;

const fs::path sourceFolder = DRIVER_SOURCE_DIR;

std::string contentsOf(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

bool contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

/// True for a line in which a process can end, or has itself ended.
bool isWayOut(const std::string& line) {
  if (contains(line, "lockAndExit(\"")) return true;
  constexpr const char* others[] = {"//", "void ", "[[noreturn]]"};
  const bool isDeclaration =
      std::any_of(std::begin(others), std::end(others),
                  [&](const char* start) { return line.starts_with(start); });
  if (isDeclaration || contains(line, "atexit(")) return false;
  constexpr const char* calls[] = {"exit(",        "Exit(status", "abort()",    "fail(",
                                   "dieBySignal(", "raise(",      "terminate()"};
  return std::any_of(std::begin(calls), std::end(calls),
                     [&](const char* call) { return contains(line, call); });
}

bool isProduct(const fs::path& path) {
  const std::string name = path.filename().string();
  const std::string extension = path.extension().string();
  const bool isSource = extension == ".cpp" || extension == ".mm" || extension == ".h";
  return isSource && !contains(name, "_test.");
}

using Ways = std::multiset<std::string>;

/// All of them that a guard can meet on a Mac, each as "file: line".
Ways waysOut() {
  std::vector<fs::path> files = {sourceFolder / "main/replies.cpp",
                                 sourceFolder / "main/macos.cpp"};
  for (const char* folder : {"guard", "platform/posix", "platform/macos"}) {
    for (const auto& entry : fs::directory_iterator(sourceFolder / folder)) {
      if (entry.is_regular_file() && isProduct(entry.path())) files.push_back(entry.path());
    }
  }
  Ways ways;
  for (const fs::path& file : files) {
    std::istringstream source(contentsOf(file));
    for (std::string line; std::getline(source, line);) {
      line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
      if (isWayOut(line)) ways.insert(fs::relative(file, sourceFolder).string() + ": " + line);
    }
  }
  return ways;
}

/// What stands between backquotes in a cell of a table.
std::vector<std::string> backquoted(const std::string& cell) {
  std::vector<std::string> found;
  std::size_t start = cell.find('`');
  while (start != std::string::npos) {
    const std::size_t end = cell.find('`', start + 1);
    found.push_back(cell.substr(start + 1, end - start - 1));
    start = cell.find('`', end + 1);
  }
  return found;
}

struct Listed {
  Ways ways;
  std::vector<std::string> tests;
};

/// The table of the page: file, line, reason, tests.
Listed listed() {
  Listed list;
  std::istringstream page(contentsOf(sourceFolder / "docs/GUARD_EXITS.md"));
  for (std::string row; std::getline(page, row);) {
    if (!row.starts_with("| `")) continue;
    std::vector<std::string> cells;
    std::istringstream rest(row.substr(1));
    for (std::string cell; std::getline(rest, cell, '|');) cells.push_back(cell);
    EXPECT_EQ(cells.size(), 4U) << row;
    if (cells.size() != 4) continue;
    for (const std::string& line : backquoted(cells[1]))
      list.ways.insert(backquoted(cells[0])[0] + ": " + line);
    const auto tests = backquoted(cells[3]);
    list.tests.insert(list.tests.end(), tests.begin(), tests.end());
  }
  return list;
}

TEST(guard_exits, are_all_listed) { EXPECT_EQ(listed().ways, waysOut()); }

TEST(guard_exits, are_shown_to_lock_by_tests_that_exist) {
  std::string tests;
  for (const char* folder : {"guard", "platform/posix", "tests"}) {
    for (const auto& entry : fs::recursive_directory_iterator(sourceFolder / folder)) {
      if (contains(entry.path().string(), "_test.cpp")) tests += contentsOf(entry.path());
    }
  }
  const Listed list = listed();
  EXPECT_FALSE(list.tests.empty());
  for (std::string test : list.tests) {
    const std::size_t dot = std::min(test.find('.'), test.size() - 1);
    test.replace(dot, 1, ", ");
    EXPECT_TRUE(contains(tests, ("TEST(" + test + ")").c_str())) << test;
  }
}

/// Whether the screen is locked after the process has exited by itself, in this state.
bool locksAtForeignExit(bool isRelocking, bool isExiting) {
  TestMac mac("display 1 1440x900", {}, Mode::direct);
  const Result run = testing_support::runInside(mac, [&] {
    driver::prepareScreenLock();
    driver::lockAtAnyExit();
    driver::globals().guardRelocking = isRelocking;
    driver::globals().guardExiting = isExiting;
    process::exit(3);
  });
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.elapsed, isRelocking || isExiting ? 0 : 500'000);
  mac.takeViolations();  // no command ends like this
  return mac.world().session.locked.value_or(false);
}

TEST(guard_exits, that_somebody_else_makes_lock_unless_the_guard_has_decided_its_end) {
  EXPECT_TRUE(locksAtForeignExit(false, false));
  EXPECT_FALSE(locksAtForeignExit(true, false));
  EXPECT_FALSE(locksAtForeignExit(false, true));
}

/// A guard at work that does not end by itself.
Result guardWithForeignExit(const std::vector<std::string>& faults) {
  TestMac mac(testing_support::guardedDesk, faults, Mode::direct);
  const std::vector<std::string> commandLine = {"driver", "lock-guard"};
  return mac.record(commandLine, {}, [&](std::size_t client) {
    return testing_support::runBodyDirect(mac.desktop(), client, [&] {
      driver::renewGlobals();
      driver::initialise(commandLine);
      loop::postToMain([] { process::exit(3); });
      driver::lockGuard();
    });
  });
}

// What the rules ask of every guard they ask here too.
TEST(guard_exits, that_somebody_else_makes_in_a_guard_at_work_wait_for_the_login_window) {
  for (const auto& [faults, elapsed] :
       {std::pair(std::vector<std::string>{}, 500'000),
        std::pair(std::vector<std::string>{"private.lock-screen 1 late"}, 1'500'000)}) {
    const Result run = guardWithForeignExit(faults);
    EXPECT_EQ(seen(run), "3 " + std::string(testing_support::guardStarts));
    EXPECT_EQ(run.elapsed, elapsed);
  }
}

// The covers stay until the login window shows.
TEST(guard_exits, by_a_fault_of_its_own_lock_and_wait_half_a_second) {
  TestMac mac("display 1 1440x900", {}, Mode::direct);
  const Result run = testing_support::runInside(mac, [] {
    driver::prepareScreenLock();
    driver::lockInLastAct();
  });
  EXPECT_TRUE(mac.world().session.locked.value_or(false));
  EXPECT_EQ(run.elapsed, 500'000);
}

}  // namespace
