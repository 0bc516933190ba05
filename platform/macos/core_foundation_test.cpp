#include "platform/macos/core_foundation.h"

#include <cmath>

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/strings.h"

namespace {

using macos::Owned;
using standins::kept;

class core_foundation : public standins::AdapterTest {};
using owned_object = core_foundation;
using retained = core_foundation;
using shared = core_foundation;

// A double that is one too large, or too small, for a signed whole number of 64 bits.
constexpr double tooLarge = 0x1p63;
constexpr double tooSmall = -0x1.0000000000001p63;

}  // namespace

TEST_F(owned_object, releases_what_it_owns_once) {
  Owned<CFTypeRef> first(standins::string(u"first"));
  Owned<CFTypeRef> moved(std::move(first));
  EXPECT_FALSE(first);
  moved = Owned<CFTypeRef>(standins::string(u"second"));
  EXPECT_EQ(standins::describe(moved.get()), "\"second\"");
}

TEST_F(owned_object, gives_its_reference_up) {
  Owned<CFTypeRef> owned(standins::string(u"kept"));
  EXPECT_EQ(standins::describe(kept(owned.release())), "\"kept\"");
  EXPECT_FALSE(owned);
}

TEST_F(owned_object, may_hold_nothing) {
  const Owned<CFTypeRef> nothing(nullptr);
  EXPECT_FALSE(nothing);
}

TEST_F(retained, adds_a_reference_to_a_borrowed_object) {
  const CFTypeRef borrowed = kept(standins::null());
  const Owned<CFTypeRef> owned = macos::retained(borrowed);
  EXPECT_EQ(owned.get(), borrowed);
}

TEST_F(shared, releases_with_the_last_copy) {
  std::shared_ptr<void> first = macos::shared(Owned<CFTypeRef>(standins::null()));
  const std::shared_ptr<void> second = first;
  first.reset();
  EXPECT_EQ(standins::describe(second.get()), "nothing");
}

TEST_F(core_foundation, a_string_goes_there_and_back) {
  const std::string text = "caf\u00e9 \U0001F600";
  const Owned<CFStringRef> string = macos::string(text);
  EXPECT_EQ(standins::unitsOf(string.get()), u"caf\u00e9 \U0001F600");
  EXPECT_EQ(macos::utf8(string.get()), text);
  EXPECT_EQ(macos::utf8(macos::string("").get()), "");
}

TEST_F(core_foundation, a_lone_surrogate_in_a_string_is_replaced) {
  const auto string = kept(standins::string(std::u16string{u'a', char16_t(0xD800)}));
  EXPECT_EQ(macos::utf8(string), "a\uFFFD");
}

TEST_F(core_foundation, an_array_retains_its_elements) {
  const Owned<CFArrayRef> array = [] {
    const Owned<CFStringRef> string = macos::string("x");
    const Owned<CFNumberRef> number = macos::number(std::int64_t{-3});
    return macos::array({string.get(), number.get()});
  }();
  EXPECT_EQ(standins::describe(array.get()), "[ \"x\" -3 ]");
  EXPECT_EQ(standins::describe(macos::array({}).get()), "[ ]");
}

TEST_F(core_foundation, a_whole_number_is_read_from_whole_numbers_only) {
  const auto of = [](CFTypeRef object) { return macos::wholeNumber(kept(object)); };
  EXPECT_EQ(of(standins::number(std::int64_t{7})), 7);
  EXPECT_EQ(of(standins::number(INT64_MIN)), INT64_MIN);
  EXPECT_EQ(of(standins::number(7.0)), 7);
  EXPECT_EQ(of(standins::number(-0x1p63)), INT64_MIN);
  EXPECT_EQ(of(standins::number(7.5)), std::nullopt);
  EXPECT_EQ(of(standins::number(NAN)), std::nullopt);
  EXPECT_EQ(of(standins::number(INFINITY)), std::nullopt);
  EXPECT_EQ(of(standins::number(tooLarge)), std::nullopt);
  EXPECT_EQ(of(standins::number(tooSmall)), std::nullopt);
  EXPECT_EQ(of(standins::hugeNumber()), std::nullopt);
  EXPECT_EQ(of(standins::string(u"7")), std::nullopt);
  EXPECT_EQ(macos::wholeNumber(standins::boolean(true)), std::nullopt);
  EXPECT_EQ(macos::wholeNumber(nullptr), std::nullopt);
}

TEST_F(core_foundation, a_real_number_is_read_from_any_number) {
  const auto of = [](CFTypeRef object) { return macos::real(kept(object)); };
  EXPECT_EQ(of(standins::number(std::int64_t{7})), 7.0);
  EXPECT_EQ(of(standins::number((std::int64_t{1} << 53) + 1)), 0x1p53);
  EXPECT_EQ(of(standins::number(-0.25)), -0.25);
  EXPECT_EQ(of(standins::hugeNumber()), 0x1p63);
  EXPECT_EQ(of(standins::string(u"7")), std::nullopt);
  EXPECT_EQ(macos::real(standins::boolean(true)), std::nullopt);
  EXPECT_EQ(macos::real(nullptr), std::nullopt);
}

TEST_F(core_foundation, a_boolean_is_read_from_booleans_and_from_0_and_1) {
  const auto of = [](CFTypeRef object) { return macos::boolean(kept(object)); };
  EXPECT_EQ(macos::boolean(standins::boolean(true)), true);
  EXPECT_EQ(macos::boolean(standins::boolean(false)), false);
  EXPECT_EQ(of(standins::number(std::int64_t{1})), true);
  EXPECT_EQ(of(standins::number(0.0)), false);
  EXPECT_EQ(of(standins::number(std::int64_t{2})), std::nullopt);
  EXPECT_EQ(of(standins::number(0.5)), std::nullopt);
  EXPECT_EQ(of(standins::string(u"true")), std::nullopt);
  EXPECT_EQ(macos::boolean(nullptr), std::nullopt);
}

TEST_F(core_foundation, a_text_is_read_from_strings_only) {
  EXPECT_EQ(macos::text(kept(standins::string(u"x"))), "x");
  EXPECT_EQ(macos::text(CFSTR("constant")), "constant");
  EXPECT_EQ(macos::text(kept(standins::attributedString())), std::nullopt);
  EXPECT_EQ(macos::text(nullptr), std::nullopt);
}
