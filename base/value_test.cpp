#include "base/value.h"

#include <gtest/gtest.h>

namespace driver {
namespace {

using Texts = std::vector<std::string>;

TEST(textsIn, are_those_of_a_list_of_nothing_else) {
  EXPECT_EQ(textsIn(Value::List{"a", "", "b"}), (Texts{"a", "", "b"}));
  EXPECT_EQ(textsIn(Value::List{}), Texts{});
}

TEST(textsIn, are_none_for_any_other_value) {
  EXPECT_EQ(textsIn(Value::List{"a", 1}), std::nullopt);
  EXPECT_EQ(textsIn(Value::List{"a", Value()}), std::nullopt);
  EXPECT_EQ(textsIn(Value::Object{{"a", "b"}}), std::nullopt);
  EXPECT_EQ(textsIn(Value("a")), std::nullopt);
  EXPECT_EQ(textsIn(Value()), std::nullopt);
}

}  // namespace
}  // namespace driver
