#include "main/arguments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

constexpr const char* argumentsDesk = R"(
    app Notes pid 41 bundle com.example.notes frontmost
)";

std::string seenOfNum(const Arguments& arguments, std::size_t index) {
  TestMac mac(argumentsDesk);
  return seen(runInside(mac, [&] { num(arguments, index); }));
}

std::string seenOfArity(const CommandForm& form, const Arguments& arguments) {
  TestMac mac(argumentsDesk);
  return seen(runInside(mac, [&] { requireArity(form, arguments); }));
}

constexpr const char* passed = "0 ";

TEST(usage, is_the_name_and_the_grammar) {
  EXPECT_EQ(usage({"windows", "<bundleId|name>"}), "usage: windows <bundleId|name>");
  EXPECT_EQ(usage({"scene", ""}), "usage: scene");
}

TEST(requireArity, passes_from_the_fewest_to_the_most) {
  const CommandForm form{"fly", "<app> [far]", 1, 2};
  EXPECT_EQ(seenOfArity(form, {"driver", "fly"}), failure("usage: fly <app> [far]"));
  EXPECT_EQ(seenOfArity(form, {"driver", "fly", "a"}), passed);
  EXPECT_EQ(seenOfArity(form, {"driver", "fly", "a", "b"}), passed);
  EXPECT_EQ(seenOfArity(form, {"driver", "fly", "a", "b", "c"}), failure("usage: fly <app> [far]"));
}

TEST(requireArity, ignores_further_arguments_by_default) {
  EXPECT_EQ(seenOfArity({"fly", ""}, {"driver", "fly"}), passed);
  EXPECT_EQ(seenOfArity({"fly", ""}, {"driver", "fly", "a", "b", "c", "d"}), passed);
}

TEST(requireArity, counts_empty_arguments) {
  EXPECT_EQ(seenOfArity({"fly", "<app>", 1}, {"driver", "fly", ""}), passed);
}

TEST(requireArity, fails_with_the_message_of_the_form) {
  EXPECT_EQ(seenOfArity({"fly", "<app>", 1, 1, "invalid flight"}, {"driver", "fly"}),
            failure("invalid flight"));
}

TEST(num, reads_the_argument_at_the_index) {
  TestMac mac(argumentsDesk);
  const Arguments arguments = {"driver", "fly", "12", "-3.5", "0x10"};
  EXPECT_EQ(valueInside(mac, [&] { return num(arguments, 2); }), 12);
  EXPECT_EQ(valueInside(mac, [&] { return num(arguments, 3); }), -3.5);
  EXPECT_EQ(valueInside(mac, [&] { return num(arguments, 4); }), 16);
}

TEST(num, reads_infinities_and_nan) {
  TestMac mac(argumentsDesk);
  const Arguments arguments = {"driver", "fly", "inf", "-1e400", "nan"};
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(valueInside(mac, [&] { return num(arguments, 2); }), infinity);
  EXPECT_EQ(valueInside(mac, [&] { return num(arguments, 3); }), -infinity);
  EXPECT_TRUE(std::isnan(valueInside(mac, [&] { return num(arguments, 4); })));
}

TEST(num, names_the_index_of_a_missing_argument) {
  EXPECT_EQ(seenOfNum({"driver", "fly"}, 2), failure("missing numeric arg 2"));
  EXPECT_EQ(seenOfNum({"driver", "fly", "1"}, 30), failure("missing numeric arg 30"));
}

TEST(num, fails_alike_for_what_is_no_number) {
  for (const char* text : {"12px", "", " ", " 1", "1 ", "\t1", "1\n", "1,5", "abc", "--1", "1e"}) {
    EXPECT_EQ(seenOfNum({"driver", "fly", text}, 2), failure("missing numeric arg 2"))
        << "'" << text << "'";
  }
}

}  // namespace
}  // namespace driver
