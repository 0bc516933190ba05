#pragma once

// Tests find this header before the library's own, of which it changes one thing: equalities are
// told to what keeps them for `scripts/update-expectations`. What they assert, and what they say
// when they fail, stays the library's.
#include_next <gtest/gtest.h>

#include "tests/expectations/comparisons.h"

#undef EXPECT_EQ
#define EXPECT_EQ(actual, expected) \
  EXPECT_PRED_FORMAT2((::expectations::Equality{__FILE__, __LINE__}), actual, expected)

#undef ASSERT_EQ
#define ASSERT_EQ(actual, expected) \
  ASSERT_PRED_FORMAT2((::expectations::Equality{__FILE__, __LINE__}), actual, expected)
