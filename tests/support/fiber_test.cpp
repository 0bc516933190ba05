#include "tests/support/fiber.h"

#include <gtest/gtest.h>

#include <array>
#include <exception>
#include <list>
#include <stdexcept>
#include <string>

namespace testing_support {

namespace {

/// Says what the exception being handled says.
std::string handled() {
  try {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  }
}

int depthOf(int levels) {
  std::array<volatile char, 4096> used = {};
  used[0] = 1;
  return levels == 0 ? 0 : depthOf(levels - 1) + used[0];
}

}  // namespace

TEST(fibers, go_on_where_they_suspended_themselves) {
  std::string course;
  Fiber fiber([&] {
    course += "one ";
    fiber.suspend();
    course += "two ";
  });
  fiber.resume();
  course += "between ";
  EXPECT_FALSE(fiber.isOver());
  fiber.resume();
  EXPECT_TRUE(fiber.isOver());
  EXPECT_EQ(course, "one between two ");
}

TEST(fibers, may_resume_others) {
  std::string course;
  Fiber inner([&] {
    course += "inner ";
    inner.suspend();
    course += "inner again ";
  });
  Fiber outer([&] {
    inner.resume();
    course += "outer ";
    outer.suspend();
    course += "outer again ";
  });
  outer.resume();
  inner.resume();
  outer.resume();
  EXPECT_EQ(course, "inner outer inner again outer again ");
}

TEST(fibers, handle_exceptions_of_their_own) {
  std::string course;
  Fiber fiber([&] {
    try {
      throw std::runtime_error("of the fiber");
    } catch (...) {
      fiber.suspend();
      course += handled() + ", ";
    }
  });
  try {
    throw std::runtime_error("of who resumes it");
  } catch (...) {
    fiber.resume();
    course += handled() + ", ";
    fiber.resume();
    course += handled();
  }
  EXPECT_EQ(course, "of who resumes it, of the fiber, of who resumes it");
}

TEST(fibers, count_their_own_exceptions_in_flight) {
  int inFiber = -1;
  Fiber fiber([&] { inFiber = std::uncaught_exceptions(); });
  class Resumes {
   public:
    explicit Resumes(Fiber& fiber) : fiber_(fiber) {}
    Resumes(const Resumes&) = delete;
    Resumes& operator=(const Resumes&) = delete;
    ~Resumes() { fiber_.resume(); }

   private:
    Fiber& fiber_;
  };
  try {
    const Resumes resumes(fiber);
    throw std::runtime_error("in flight");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(inFiber, 0);
}

TEST(fibers, have_large_stacks_however_many_there_were) {
  constexpr int levels = 1000;
  std::list<Fiber> fibers;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 20; ++i) {
      int depth = 0;
      fibers.emplace_back([&] { depth = depthOf(levels); }).resume();
      EXPECT_EQ(depth, levels);
    }
    fibers.clear();
  }
}

TEST(fibers, may_go_that_never_began) {
  const Fiber fiber([] { FAIL(); });
  EXPECT_FALSE(fiber.isOver());
}

}  // namespace testing_support
