#include "simulator/input/typing.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"
#include "simulator/world/fields.h"

namespace simulator {

namespace {

/// A field with a text and a caret or selection.
class typed_text : public testing::Test {
 protected:
  void hold(const std::string& text, ax::Range selection) {
    field().attributes["AXValue"] = text;
    field().attributes["AXSelectedTextRange"] = selection;
  }
  Application& notes() { return world_.applications[0]; }
  Element& field() { return *findLabelled(notes(), "Body"); }

  /// Where the caret is after each of these moves.
  std::vector<std::int64_t> carets(std::initializer_list<CaretMove> moves) {
    std::vector<std::int64_t> places;
    for (const CaretMove move : moves) {
      moveCaret(field(), move);
      places.push_back(selectionOf(field()).location);
      EXPECT_EQ(selectionOf(field()).length, 0);
    }
    return places;
  }
  std::string text() { return std::string(textOf(field())); }

  World world_ = parseWorld(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 300x300
            AXTextArea "Body" at 10,10 size 100x100
  )");
};

using Places = std::vector<std::int64_t>;

TEST_F(typed_text, moves_the_caret_by_characters) {
  hold("a😀é", {0, 0});
  EXPECT_EQ(carets({CaretMove::right, CaretMove::right, CaretMove::right, CaretMove::right}),
            (Places{1, 3, 4, 4}));
  EXPECT_EQ(carets({CaretMove::left, CaretMove::left, CaretMove::left, CaretMove::left}),
            (Places{3, 1, 0, 0}));
}

TEST_F(typed_text, moves_the_caret_by_lines_and_keeps_its_column_as_far_as_it_goes) {
  hold("abcd\n😀\n\nxyz", {3, 0});
  EXPECT_EQ(carets({CaretMove::down, CaretMove::down, CaretMove::down, CaretMove::down}),
            (Places{7, 8, 9, 12}));
  EXPECT_EQ(carets({CaretMove::up, CaretMove::up, CaretMove::up, CaretMove::up}),
            (Places{8, 5, 0, 0}));
  EXPECT_EQ(carets({CaretMove::end, CaretMove::start}), (Places{12, 0}));
}

TEST_F(typed_text, leaves_a_selection_at_its_nearer_end) {
  hold("abcdef", {1, 3});
  EXPECT_EQ(carets({CaretMove::left}), (Places{1}));
  hold("abcdef", {1, 3});
  EXPECT_EQ(carets({CaretMove::right}), (Places{4}));
  hold("abcdef", {1, 3});
  EXPECT_EQ(carets({CaretMove::down}), (Places{6}));
}

TEST_F(typed_text, deletes_a_character_or_the_selection) {
  hold("a😀b", {3, 0});
  deleteBackward(notes(), field().id);
  EXPECT_EQ(text(), "ab");
  EXPECT_EQ(selectionOf(field()).location, 1);
  deleteForward(notes(), field().id);
  deleteForward(notes(), field().id);
  EXPECT_EQ(text(), "a");

  hold("abcdef", {1, 4});
  deleteForward(notes(), field().id);
  EXPECT_EQ(text(), "af");
  hold("abcdef", {0, 6});
  deleteBackward(notes(), field().id);
  deleteBackward(notes(), field().id);
  EXPECT_EQ(text(), "");
}

TEST_F(typed_text, selects_all) {
  hold("a😀", {0, 0});
  selectAll(field());
  EXPECT_EQ(selectionOf(field()).location, 0);
  EXPECT_EQ(selectionOf(field()).length, 3);
}

}  // namespace

}  // namespace simulator
