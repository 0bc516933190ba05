#include "simulator/drawing/pictures.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "simulator/text/parse.h"
#include "tests/support/drawn_desk.h"

namespace simulator {

namespace {

using testing_support::desk;
using testing_support::windowOnGrey;

/// The pixel of a PNG as 0xRRGGBB.
class Pixels {
 public:
  explicit Pixels(const std::string& png) : rest_(png) {
    surface_ = cairo_image_surface_create_from_png_stream(read, this);
  }
  ~Pixels() { cairo_surface_destroy(surface_); }
  Pixels(const Pixels&) = delete;
  Pixels& operator=(const Pixels&) = delete;

  int width() const { return cairo_image_surface_get_width(surface_); }
  int height() const { return cairo_image_surface_get_height(surface_); }
  std::uint32_t at(int x, int y) const {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel,
                cairo_image_surface_get_data(surface_) +
                    y * cairo_image_surface_get_stride(surface_) + x * 4,
                sizeof pixel);
    return pixel & 0xFFFFFF;
  }

 private:
  static cairo_status_t read(void* self, unsigned char* data, unsigned int length) {
    std::string_view& rest = static_cast<Pixels*>(self)->rest_;
    if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, rest.data(), length);
    rest.remove_prefix(length);
    return CAIRO_STATUS_SUCCESS;
  }

  std::string_view rest_;
  cairo_surface_t* surface_ = nullptr;
};

TEST(drawing, gives_a_png_of_the_size_asked_for) {
  const World world = parseWorld(desk);

  const std::string png = drawPng(screenPicture(world)).value();

  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
  const Pixels pixels(png);
  EXPECT_EQ(pixels.width(), 400);
  EXPECT_EQ(pixels.height(), 220);
}

TEST(drawing, the_screen_is_drawn_at_the_main_displays_scale) {
  const Picture picture =
      screenPicture(parseWorld("display 1 100x50 scale 2\n"
                               "display 2 30x50 at -30,10"));

  EXPECT_EQ(picture.source, (Rect{-30, 0, 130, 60}));
  EXPECT_EQ(picture.width, 260u);
  EXPECT_EQ(picture.height, 120u);
}

TEST(drawing, without_displays_there_is_no_picture) {
  World world = parseWorld("");
  world.displays.clear();

  EXPECT_EQ(drawPng(screenPicture(world)), std::nullopt);
}

TEST(drawing, a_part_of_the_space_without_a_display_is_black) {
  const std::string png = drawPng(screenPicture(parseWorld(desk))).value();
  const Pixels pixels(png);

  EXPECT_EQ(pixels.at(350, 150), 0x000000u);
  EXPECT_NE(pixels.at(350, 50), 0x000000u);
}

TEST(drawing, the_background_is_the_grey_asked_for) {
  Picture picture = windowOnGrey(parseWorld(desk));
  picture.windows.clear();
  const std::string png = drawPng(picture).value();
  const Pixels pixels(png);

  EXPECT_EQ(pixels.at(0, 0), 0x808080u);
  EXPECT_EQ(pixels.at(299, 219), 0x808080u);
}

TEST(drawing, the_source_decides_what_fills_the_picture) {
  Picture picture = windowOnGrey(parseWorld(desk));
  picture.source = {100, 100, 10, 10};
  picture.width = picture.height = 50;
  const std::string png = drawPng(picture).value();
  const Pixels pixels(png);

  // Inside the text area, below its text.
  EXPECT_EQ(pixels.at(40, 49), 0xFFFFFFu);
}

TEST(drawing, the_same_picture_has_the_same_bytes) {
  const World world = parseWorld(desk);

  EXPECT_EQ(drawPng(screenPicture(world)), drawPng(screenPicture(world)));
}

TEST(drawing, pictures_of_impossible_sizes_are_none) {
  const Picture good = windowOnGrey(parseWorld(desk));
  const auto refused = [&](const std::function<void(Picture&)>& change) {
    Picture picture = good;
    change(picture);
    return !drawPng(picture).has_value();
  };

  EXPECT_FALSE(refused([](Picture&) {}));
  EXPECT_TRUE(refused([](Picture& picture) { picture.width = 0; }));
  EXPECT_TRUE(refused([](Picture& picture) { picture.height = 0; }));
  EXPECT_TRUE(refused([](Picture& picture) { picture.width = 16'385; }));
  EXPECT_TRUE(refused([](Picture& picture) { picture.height = 1ULL << 40; }));
  EXPECT_TRUE(refused([](Picture& picture) { picture.source.width = 0; }));
  EXPECT_TRUE(refused([](Picture& picture) { picture.source.x = std::nan(""); }));
}

TEST(drawing, the_windows_picture_holds_what_is_drawn_of_it) {
  const World world = parseWorld(desk);

  const WindowPicture picture = pictureOf(world, *findWindow(world, 7));

  EXPECT_EQ(picture.owner, "Notes");
  EXPECT_TRUE(picture.key);
  EXPECT_EQ(picture.focused, 3);
  std::vector<ElementId> ids;
  for (const Element& element : picture.elements) ids.push_back(element.id);
  EXPECT_EQ(ids, (std::vector<ElementId>{2, 3, 4, 5, 6}));
  EXPECT_FALSE(pictureOf(world, *findWindow(world, 8)).key);
}

TEST(drawing, no_window_is_key_of_an_application_in_the_back) {
  World world = parseWorld(desk);
  world.frontmost = 0;

  EXPECT_FALSE(pictureOf(world, *findWindow(world, 7)).key);
}

TEST(drawing, windows_off_screen_are_not_on_the_screen) {
  const Picture picture = screenPicture(parseWorld(desk));

  ASSERT_EQ(picture.windows.size(), 1u);
  EXPECT_EQ(picture.windows[0].window.number, 7u);
  EXPECT_EQ(picture.menuBarTitle, "Notes");
  EXPECT_EQ(picture.pointer, (Point{290, 210}));
}

constexpr const char* drawnRoles[] = {"AXGroup",
                                      "AXButton",
                                      "AXPopUpButton",
                                      "AXCheckBox",
                                      "AXRadioButton",
                                      "AXSwitch",
                                      "AXTextField",
                                      "AXSearchField",
                                      "AXTextArea",
                                      "AXStaticText",
                                      "AXHeading",
                                      "AXLink",
                                      "AXRow",
                                      "AXList",
                                      "AXWebArea",
                                      "AXSlider",
                                      "AXImage",
                                      "AXTab",
                                      "AXProgressIndicator",
                                      "AXDisclosureTriangle",
                                      "AXMenu",
                                      "AXMenuItem",
                                      "AXPopover"};

/// Elements of all roles with odd texts, one over the other. The last one has the keyboard focus.
std::vector<Element> oddElements(const Rect& frame) {
  std::string longText;
  for (int i = 0; i < 3000; ++i) longText += "long 你好 ";
  const std::string texts[] = {"", "\xFF\xED\xA0\x80", std::string(3, '\0'), "😀\n\nשלום", longText};
  std::vector<Element> elements;
  for (const char* role : drawnRoles) {
    Element element;
    element.id = static_cast<ElementId>(elements.size()) + 1;
    element.role = role;
    element.frame = frame;
    element.attributes["AXTitle"] = element.attributes["AXValue"] =
        texts[static_cast<std::size_t>(element.id) % std::size(texts)];
    element.attributes["AXSelectedTextRange"] = ax::Range{-7, 1'000'000'000'000};
    elements.push_back(element);
  }
  return elements;
}

TEST(drawing, of_odd_frames_and_texts_shows_what_lies_in_the_picture_and_nothing_else) {
  constexpr double huge = 1e308;
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::nan("");
  struct Case {
    Rect frame;
    bool inWindow;   // of elements
    bool onPicture;  // of a window
  };
  const Case cases[] = {
      {{nan, 0, 10, 10}, false, false},
      {{0, 0, nan, nan}, false, false},
      {{0, 0, infinity, 10}, false, false},
      {{-huge, -huge, huge, huge}, false, true},  // a window that ends at the corner has a shadow
      {{0, 0, huge, huge}, true, true},
      {{0, 0, -5, -5}, false, false},
      {{40, 80, 0.1, 0.1}, true, true},
      {{-1e6, -1e6, 3e6, 3e6}, true, true},
      {{huge, huge, 1, 1}, false, false},
  };
  const World world = parseWorld(desk);
  Picture bare = windowOnGrey(world);
  bare.windows[0].elements.clear();
  bare.windows[0].window.scrolledLines = {nan, huge};
  Picture empty = bare;
  empty.windows.clear();
  for (const Case& each : cases) {
    SCOPED_TRACE(testing::PrintToString(each.frame.x) + " " +
                 testing::PrintToString(each.frame.width));
    Picture picture = bare;
    picture.windows[0].elements = oddElements(each.frame);
    picture.windows[0].focused = static_cast<ElementId>(std::size(drawnRoles));
    const std::string inWindow = drawPng(picture).value();
    EXPECT_EQ(inWindow != drawPng(bare), each.inWindow);
    const Pixels pixels(inWindow);
    EXPECT_EQ(pixels.at(0, 0), 0x808080u);
    EXPECT_EQ(pixels.at(299, 219), 0x808080u);

    picture.windows[0].window.frame = each.frame;
    EXPECT_EQ(drawPng(picture) != drawPng(empty), each.onPicture);
  }
}

TEST(drawing, cuts_elements_at_their_windows_edge) {
  Picture picture = windowOnGrey(parseWorld(desk));
  picture.windows[0].elements.resize(1);
  picture.windows[0].elements[0].frame = Rect{200, 100, 95, 30};
  picture.windows[0].window.hover.reset();
  Picture without = picture;
  without.windows[0].elements.clear();
  const std::string withElement = drawPng(picture).value();
  const std::string withoutElement = drawPng(without).value();
  const Pixels drawn(withElement);
  const Pixels bare(withoutElement);

  EXPECT_NE(drawn.at(240, 101), bare.at(240, 101));
  EXPECT_EQ(drawn.at(280, 115), bare.at(280, 115));
}

}  // namespace

}  // namespace simulator
