#include <gtest/gtest.h>

#include <filesystem>

#include "main/dispatcher.h"
#include "tests/soak/apart.h"
#include "tests/soak/case_files.h"
#include "tests/soak/command_lines.h"
#include "tests/soak/generate.h"
#include "tests/support/temporary_folder.h"

/// Cases that nobody wrote, and those that were found among them: none may have a complaint.
namespace {

using namespace soak;
using testing_support::TemporaryFolder;

constexpr std::uint64_t fixedSeeds = 6'000;

/// So that a share of the suite is a part of the time.
constexpr std::uint64_t seedsOfEach = 250;

std::string said(const std::optional<Complaint>& complaint) {
  return complaint ? complaint->judge + ": " + complaint->text : "";
}

std::string kept(const std::string& name) {
  return std::string(DRIVER_SOURCE_DIR) + "/tests/soak/cases/" + name;
}

std::vector<std::string> keptCases() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kept(""))) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class fixed_seeds : public testing::TestWithParam<std::uint64_t> {};

TEST_P(fixed_seeds, have_no_complaint) {
  const TemporaryFolder folder;
  for (std::uint64_t seed = GetParam(); seed < GetParam() + seedsOfEach; ++seed) {
    EXPECT_EQ(said(verdict(generate(seed), folder.path(""))), "") << "seed " << seed;
  }
}

TEST_P(fixed_seeds, are_the_same_again_read_from_files_and_in_flows) {
  const TemporaryFolder folder;
  for (std::uint64_t seed = GetParam(); seed < GetParam() + seedsOfEach; seed += 10) {
    EXPECT_EQ(said(repetition(generate(seed), folder.path(""))), "") << "seed " << seed;
  }
}

TEST_P(fixed_seeds, go_on_from_a_snapshot_as_if_there_had_been_none) {
  const TemporaryFolder folder;
  for (std::uint64_t seed = GetParam(); seed < GetParam() + seedsOfEach; seed += 10) {
    EXPECT_EQ(said(resumption(generate(seed), folder.path(""))), "") << "seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(soak, fixed_seeds,
                         testing::Range<std::uint64_t>(1, 1 + fixedSeeds, seedsOfEach));

class kept_cases : public testing::TestWithParam<std::string> {};

TEST_P(kept_cases, have_no_complaint) {
  const TemporaryFolder folder;
  EXPECT_EQ(said(verdictApart(readCaseIn(kept(GetParam())), folder.path(""))), "");
}

INSTANTIATE_TEST_SUITE_P(soak, kept_cases, testing::ValuesIn(keptCases()),
                         [](const auto& each) { return each.param; });

/// FNV-1a.
std::uint64_t hashOf(const std::string& text, std::uint64_t hash) {
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return hash;
}

TEST(generate, gives_the_same_cases_on_every_machine_and_with_every_compiler) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (std::uint64_t seed = 1; seed <= 500; ++seed) {
    const Case one = generate(seed);
    hash = hashOf(stepsText(one), hashOf(worldText(one), hash));
  }
  EXPECT_EQ(hash, 9451370332855878686U);
}

TEST(generated_runs, are_of_every_command_that_does_not_live_on) {
  std::set<std::string_view> inTable;
  for (const driver::Command& command : driver::commands()) {
    if (!command.livesOn) inTable.insert(command.form.name);
  }
  const auto names = namesOfRuns();
  EXPECT_EQ(std::set<std::string_view>(names.begin(), names.end()), inTable);
}

}  // namespace
