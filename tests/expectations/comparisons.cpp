#include "tests/expectations/comparisons.h"

#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <vector>

namespace expectations {

namespace {

/// More comparisons than these in one place of one test are counted, not listed: no table of
/// expectations is that long.
constexpr std::size_t mostListed = 2'000;

struct Comparison {
  bool holds;
  std::string actual;
  std::string expected;
};

/// What one test has compared in one place of a source, in order.
struct Kept {
  std::string actual;
  std::string expected;
  std::vector<Comparison> comparisons;
  std::size_t count = 0;
  bool allHold = true;
};

/// The comparisons of the running test, written when it ends: where all hold, how many there were.
class Keeper : public testing::EmptyTestEventListener {
 public:
  Keeper() {
    std::filesystem::create_directories(EXPECTATIONS_FOLDER);
    file_.open(std::string(EXPECTATIONS_FOLDER) + "/" + std::to_string(getpid()) + ".jsonl");
  }

  void add(const Place& place, Comparison comparison) {
    Kept& kept = kept_[{place.file, place.line, place.expected}];
    kept.actual = place.actual;
    kept.expected = place.expected;
    kept.count += 1;
    kept.allHold = kept.allHold && comparison.holds;
    if (kept.count <= mostListed) kept.comparisons.push_back(std::move(comparison));
  }

  void OnTestEnd(const testing::TestInfo& test) override {
    const std::string name = std::string(test.test_suite_name()) + "." + test.name();
    for (const auto& [place, kept] : kept_) {
      file_ << "{\"test\":" << textJson(name) << ",\"file\":" << textJson(std::get<0>(place))
            << ",\"line\":" << std::get<1>(place) << ",\"actual\":" << textJson(kept.actual)
            << ",\"expected\":" << textJson(kept.expected) << ",\"count\":" << kept.count
            << ",\"compared\":" << listed(kept) << "}\n";
    }
    file_.flush();
    kept_.clear();
  }

 private:
  static std::string listed(const Kept& kept) {
    std::string items;
    if (kept.allHold) return "[]";
    for (const auto& [holds, actual, expected] : kept.comparisons) {
      items += items.empty() ? "[" : ",[";
      items += std::string(holds ? "true," : "false,") + actual + "," + expected + "]";
    }
    return "[" + items + "]";
  }

  std::ofstream file_;
  std::map<std::tuple<std::string, int, std::string>, Kept> kept_;
};

/// The keeper, which GoogleTest owns; none unless comparisons are kept.
Keeper* keeper() {
  static Keeper* const only = [] {
    const char* setting = std::getenv("UPDATE_EXPECT");
    if (setting == nullptr || *setting == '\0') return static_cast<Keeper*>(nullptr);
    auto* made = new Keeper;
    testing::UnitTest::GetInstance()->listeners().Append(made);
    return made;
  }();
  return only;
}

}  // namespace

bool wanted() { return keeper() != nullptr; }

std::string textJson(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text = "{\"text\":\"";
  for (const char byte : bytes) {
    const auto number = static_cast<unsigned char>(byte);
    text += digits[number / 16];
    text += digits[number % 16];
  }
  return text + "\"}";
}

std::string json(bool value) { return value ? "true" : "false"; }

void keep(const Place& place, bool holds, std::string actual, std::string expected) {
  keeper()->add(place, {holds, std::move(actual), std::move(expected)});
}

}  // namespace expectations
