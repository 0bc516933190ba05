#include "platform/macos/ax_values.h"

#include "platform/macos/standins/accessibility.h"
#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/strings.h"

namespace {

using macos::Owned;
using standins::kept;

class ax_values : public standins::AdapterTest {
 protected:
  static ax::Slot slot(CFTypeRef object) { return macos::slot(kept(object)); }

  // The value of one type, or nothing.
  template <class Type>
  static std::optional<Type> read(CFTypeRef object) {
    const ax::Slot read = slot(object);
    const Type* content = read.value ? read.value->get<Type>() : nullptr;
    return content != nullptr ? std::optional(*content) : std::nullopt;
  }

  static std::string written(ax::Value value) {
    return standins::describe(macos::object(value).get());
  }
};

CFArrayRef nestedArrays(int depth) {
  return depth == 0 ? standins::array({}) : standins::array({nestedArrays(depth - 1)});
}

const ax::Value& innermost(const ax::Value& value) {
  const auto* elements = value.get<std::vector<ax::Value>>();
  return elements == nullptr || elements->empty() ? value : innermost(elements->front());
}

}  // namespace

TEST_F(ax_values, reads_every_type) {
  EXPECT_EQ(read<std::string>(standins::string(u"caf\u00e9")), "caf\u00e9");
  EXPECT_EQ(read<bool>(macos::retained<CFTypeRef>(kCFBooleanTrue).release()), true);
  EXPECT_EQ(read<std::int64_t>(standins::number(std::int64_t{-5})), -5);
  EXPECT_EQ(read<double>(standins::number(2.5)), 2.5);
  EXPECT_EQ(read<double>(standins::number(2.0)), 2.0);
  EXPECT_EQ(read<double>(standins::hugeNumber()), 0x1p63);
  EXPECT_EQ(read<platform::Point>(standins::boxed(CGPoint{1, 2})), (platform::Point{1, 2}));
  EXPECT_EQ(read<platform::Size>(standins::boxed(CGSize{3, 4})), (platform::Size{3, 4}));
  EXPECT_EQ(read<platform::Rect>(standins::boxed(CGRect{{1, 2}, {3, 4}})),
            (platform::Rect{1, 2, 3, 4}));
  EXPECT_EQ(read<ax::Range>(standins::boxed(CFRange{5, 6})), (ax::Range{5, 6}));
}

TEST_F(ax_values, reads_an_element_as_one_more_reference) {
  const auto element = read<ax::Element>(standins::element(40, "button"));
  EXPECT_EQ(standins::describe(element.value().get()), "button of 40");
}

TEST_F(ax_values, keeps_a_value_that_nothing_looks_into) {
  const auto opaque = read<ax::Opaque>(standins::attributedString());
  EXPECT_EQ(standins::describe(opaque.value().get()), "attributed string");
  EXPECT_TRUE(read<ax::Opaque>(standins::boxedUnknown()).has_value());
}

TEST_F(ax_values, reads_an_array_with_its_elements) {
  const auto elements = read<std::vector<ax::Value>>(
      standins::array({standins::string(u"x"), standins::array({standins::number(std::int64_t{1})}),
                       standins::element(40, "row")}));
  ASSERT_EQ(elements.value().size(), 3u);
  EXPECT_EQ(*elements->at(0).get<std::string>(), "x");
  EXPECT_EQ(*innermost(elements->at(1)).get<std::int64_t>(), 1);
  EXPECT_EQ(standins::describe(elements->at(2).get<ax::Element>()->get()), "row of 40");
  EXPECT_TRUE(read<std::vector<ax::Value>>(standins::array({})).value().empty());
}

TEST_F(ax_values, keeps_unread_what_is_nested_too_deeply) {
  const ax::Slot shallow = slot(nestedArrays(7));
  EXPECT_NE(innermost(*shallow.value).get<std::vector<ax::Value>>(), nullptr);
  const ax::Slot deep = slot(nestedArrays(8));
  EXPECT_EQ(standins::describe(innermost(*deep.value).get<ax::Opaque>()->get()), "[ ]");
}

TEST_F(ax_values, tells_the_error_that_stands_in_place_of_a_value) {
  const ax::Slot failed = slot(standins::boxed(kAXErrorAttributeUnsupported));
  EXPECT_FALSE(failed.value);
  EXPECT_EQ(failed.error, ax::Error::attributeUnsupported);
}

TEST_F(ax_values, a_null_object_says_that_there_is_no_value) {
  const ax::Slot empty = slot(standins::null());
  EXPECT_FALSE(empty.value);
  EXPECT_EQ(empty.error, ax::Error::noValue);
}

TEST_F(ax_values, what_is_neither_value_nor_error_is_absent_without_an_error) {
  const ax::Slot illegal = slot(standins::boxedIllegal());
  EXPECT_FALSE(illegal.value);
  EXPECT_EQ(illegal.error, ax::Error::success);
  EXPECT_FALSE(macos::slot(nullptr).value);
  EXPECT_EQ(macos::slot(nullptr).error, ax::Error::success);
}

TEST_F(ax_values, writes_every_type) {
  EXPECT_EQ(written({std::string("caf\u00e9")}), "\"caf\u00e9\"");
  EXPECT_EQ(written({true}), "true");
  EXPECT_EQ(written({false}), "false");
  EXPECT_EQ(written({std::int64_t{-5}}), "-5");
  EXPECT_EQ(written({2.5}), "2.500000");
  EXPECT_EQ(written({platform::Point{1, 2}}), "point 1.000000 2.000000");
  EXPECT_EQ(written({platform::Size{3, 4}}), "size 3.000000 4.000000");
  EXPECT_EQ(written({platform::Rect{1, 2, 3, 4}}), "rect 1.000000 2.000000 3.000000 4.000000");
  EXPECT_EQ(written({ax::Range{5, 6}}), "range 5 6");
  EXPECT_EQ(written({std::vector<ax::Value>{{std::string("x")}, {true}}}), "[ \"x\" true ]");
}

TEST_F(ax_values, writes_an_element_and_an_unread_value_as_they_came) {
  EXPECT_EQ(written(*slot(standins::element(40, "button")).value), "button of 40");
  EXPECT_EQ(written(*slot(standins::attributedString()).value), "attributed string");
}
