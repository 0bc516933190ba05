#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "tests/mutants/mutant.h"
#include "tests/mutants/reached.h"

namespace {

/// Writes a line for each test into the file REACHED: its name, the milliseconds that it took, and
/// the mistakes whose places it reached.
class Listener : public testing::EmptyTestEventListener {
 public:
  explicit Listener(const char* path) : file_(path) {}

  /// What was reached before the first test, or between two, belongs to the next one.
  void OnTestEnd(const testing::TestInfo& test) override {
    file_ << test.test_suite_name() << '.' << test.name() << ' ' << test.result()->elapsed_time();
    for (const int number : mutant::takeReached()) file_ << ' ' << number;
    file_ << std::endl;
  }

 private:
  std::ofstream file_;
};

[[maybe_unused]] const bool isListening = [] {
  const char* path = std::getenv("REACHED");
  if (mutant::chosen >= 0 || path == nullptr) return false;
  testing::UnitTest::GetInstance()->listeners().Append(new Listener(path));
  return true;
}();

}  // namespace
