#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>

#include "platform/posix/descriptors.h"
#include "tests/fuzz/targets.h"
#include "tests/support/child_process.h"

/// What takes bytes from outside gets those that were found or thought of, within the limits that
/// are stated for it.
namespace {

using fuzz::Target;

/// A sanitizer needs memory of its own.
#ifdef DRIVER_SANITIZED
constexpr bool countsMemory = false;
#else
constexpr bool countsMemory = true;
#endif

std::string corpusFolder() { return std::string(DRIVER_SOURCE_DIR) + "/tests/fuzz/corpus"; }

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void setLimit(decltype(RLIMIT_CPU) resource, rlim_t value) {
  const rlimit limit{value, value};
  setrlimit(resource, &limit);
}

/// What is wrong with what `act` says, does, or takes.
template <class Act>
std::string complaintWithin(rlim_t memoryBytes, rlim_t seconds, const Act& act) {
  const posix::Ending ending = posix::endingOf([&](int descriptor) {
    if (countsMemory) setLimit(RLIMIT_DATA, memoryBytes);
    setLimit(RLIMIT_CPU, seconds);
    std::string complaint;
    try {
      complaint = act();
    } catch (const std::bad_alloc&) {
      complaint = "it takes too much memory";
    } catch (const std::exception& error) {
      complaint = std::string("an exception: ") + error.what();
    }
    posix::writeAll(descriptor, complaint);
    _exit(0);
  });
  if (ending.signal == SIGXCPU || ending.signal == SIGKILL) return "it takes too long";
  if (ending.signal != 0) return "signal " + std::to_string(ending.signal);
  if (ending.exitStatus != 0) return "status " + std::to_string(ending.exitStatus);
  return ending.output;
}

/// The inputs that are kept, as "TARGET/NAME".
std::vector<std::string> keptInputs() {
  std::vector<std::string> names;
  for (const auto& folder : std::filesystem::directory_iterator(corpusFolder())) {
    for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
      names.push_back(folder.path().filename().string() + "/" + file.path().filename().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

class hostile_bytes : public testing::TestWithParam<std::string> {};

TEST_P(hostile_bytes, do_no_harm) {
  const std::string& name = GetParam();
  const Target* target = fuzz::targetNamed(name.substr(0, name.find('/')));
  ASSERT_NE(target, nullptr);
  const std::string input = contentsOf(corpusFolder() + "/" + name);
  ASSERT_LE(input.size(), fuzz::inputBytesMax);

  EXPECT_EQ(complaintWithin(fuzz::memoryBytesMax, fuzz::inputSecondsMax,
                            [&] { return target->complaint(input); }),
            "");
}

INSTANTIATE_TEST_SUITE_P(corpus, hostile_bytes, testing::ValuesIn(keptInputs()),
                         [](const auto& each) {
                           std::string name = each.param;
                           std::replace_if(
                               name.begin(), name.end(),
                               [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
                           return name;
                         });

TEST(hostile_bytes, are_kept_for_every_target) {
  std::vector<std::string> expected;
  for (const Target& each : fuzz::targets()) expected.emplace_back(each.name);
  std::vector<std::string> folders;
  for (const auto& folder : std::filesystem::directory_iterator(corpusFolder())) {
    folders.push_back(folder.path().filename());
  }
  std::sort(folders.begin(), folders.end());

  EXPECT_EQ(folders, expected);
}

TEST(hostile_bytes, of_the_greatest_length_stay_within_the_limits) {
  for (const Target& target : fuzz::targets()) {
    for (const char* piece : {"\n", "[", "a ", "{\"op\":", "\xFF"}) {
      std::string input;
      while (input.size() < fuzz::inputBytesMax) input += piece;
      input.resize(fuzz::inputBytesMax);
      EXPECT_EQ(complaintWithin(fuzz::memoryBytesMax, fuzz::inputSecondsMax,
                                [&] { return target.complaint(input); }),
                "")
          << target.name << " " << piece;
    }
  }
}

TEST(limits, are_noticed) {
  EXPECT_EQ(complaintWithin(64U << 20U, 1,
                            [] {
                              volatile bool goesOn = true;
                              while (goesOn) continue;
                              return "";
                            }),
            "it takes too long");
  if (countsMemory) {
    EXPECT_EQ(complaintWithin(64U << 20U, 10,
                              [] {
                                const std::string large(std::size_t{256} << 20U, 'x');
                                return large.substr(0, 1);
                              }),
              "it takes too much memory");
  }
  EXPECT_EQ(complaintWithin(64U << 20U, 10, [] { return "a complaint"; }), "a complaint");
  EXPECT_EQ(
      complaintWithin(64U << 20U, 10, []() -> std::string { throw std::runtime_error("odd"); }),
      "an exception: odd");
}

}  // namespace
