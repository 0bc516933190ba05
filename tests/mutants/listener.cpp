#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "tests/mutants/mutant.h"
#include "tests/mutants/reached.h"

namespace {

/// Writes a line for each test into the file REACHED: its name, the milliseconds that it took, and
/// the mistakes whose places it reached. A first line, of the name "*", has those that were reached
/// before any test, as by the initial values of constants: they may show in every test.
class Listener : public testing::EmptyTestEventListener {
 public:
  explicit Listener(const char* path) : file_(path) {}

  void OnTestProgramStart(const testing::UnitTest&) override { write("*", 0); }

  /// What was reached between two tests belongs to the second.
  void OnTestEnd(const testing::TestInfo& test) override {
    write(std::string(test.test_suite_name()) + '.' + test.name(), test.result()->elapsed_time());
  }

 private:
  void write(const std::string& name, testing::TimeInMillis milliseconds) {
    file_ << name << ' ' << milliseconds;
    for (const int number : mutant::takeReached()) file_ << ' ' << number;
    file_ << std::endl;
  }

  std::ofstream file_;
};

[[maybe_unused]] const bool isListening = [] {
  const char* path = std::getenv("REACHED");
  if (mutant::chosen >= 0 || path == nullptr) return false;
  testing::UnitTest::GetInstance()->listeners().Append(new Listener(path));
  return true;
}();

}  // namespace
