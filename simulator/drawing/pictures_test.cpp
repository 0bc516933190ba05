#include "simulator/drawing/pictures.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "simulator/text/parse.h"

namespace simulator {

namespace {

/// Fonts that the libraries keep for the next picture are given back, so that what is still held at
/// the end of the tests is a leak.
class FontsGoneAtEnd : public testing::Environment {
 public:
  void TearDown() override {
    pango_cairo_font_map_set_default(nullptr);
    cairo_debug_reset_static_data();
    FcFini();
  }
};

[[maybe_unused]] const testing::Environment* const fontsGoneAtEnd =
    testing::AddGlobalTestEnvironment(new FontsGoneAtEnd);

constexpr const char* desk = R"(
    display 1 300x220 scale 1
    display 2 100x100 at 300,0
    pointer 290,210
    app Notes pid 41 frontmost
        window 7 "Inbox" at 20,30 size 240x160
            AXButton "Send" at 30,70 size 60x20
            AXTextArea "Body" at 30,100 size 150x60 value "hello" focused
            AXSlider at 100,70 size 80x20 value 0.5
            AXCheckBox "Encrypt" at 190,70 size 60x20
            AXRow "Row" at 190,100 size 60x20
            AXButton "Far away" at 1000,1000 size 60x20
            AXButton "Nowhere"
        window 8 "Small" at 100,40 size 50x50 off-screen
)";

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

Picture windowOnGrey(const World& world) {
  Picture picture;
  picture.width = 300;
  picture.height = 220;
  picture.source = {0, 0, 300, 220};
  picture.backgroundGrey = 0.5;
  picture.windows.push_back(pictureOf(world, *findWindow(world, 7)));
  return picture;
}

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

/// A change to the world or to a picture, and whether it shows.
struct Change {
  const char* name;
  bool shows;
  std::function<void(World&)> make;
};

void set(World& world, ElementId id, const char* name, AttributeValue value) {
  findElement(world.applications[0], id)->attributes[name] = std::move(value);
}

std::vector<Change> changes() {
  const auto window = [](World& world) -> Window& { return *findWindow(world, 7); };
  const auto element = [](World& world, ElementId id) -> Element& {
    return *findElement(world.applications[0], id);
  };
  return {
      {"nothing", false, [](World&) {}},
      {"title", true, [=](World& world) { window(world).title = "Outbox"; }},
      {"no title", true, [=](World& world) { window(world).title.reset(); }},
      {"place", true, [=](World& world) { window(world).frame.x += 1; }},
      {"kind", true, [](World& world) { world.applications[0].kind = ApplicationKind::chromium; }},
      {"front", true, [](World& world) { world.frontmost = 0; }},
      {"scroll down", true, [=](World& world) { window(world).scrolledLines.y = -3; }},
      {"scroll up", true, [=](World& world) { window(world).scrolledLines.y = 3; }},
      {"scroll aside", true, [=](World& world) { window(world).scrolledLines.x = 3; }},
      {"hover a button", true,
       [=](World& world) {
         window(world).hover = Point{40, 80};
       }},
      {"hover a row", true,
       [=](World& world) {
         window(world).hover = Point{200, 110};
       }},
      {"hover nothing", false,
       [=](World& world) {
         window(world).hover = Point{25, 180};
       }},
      {"label", true, [](World& world) { set(world, 2, "AXTitle", std::string("Post")); }},
      {"value", true, [](World& world) { set(world, 3, "AXValue", std::string("hello!")); }},
      {"slider", true, [](World& world) { set(world, 4, "AXValue", 0.75); }},
      {"check box", true, [](World& world) { set(world, 5, "AXValue", std::int64_t{1}); }},
      {"selected row", true, [](World& world) { set(world, 6, "AXSelected", true); }},
      {"disabled", true, [](World& world) { set(world, 2, "AXEnabled", false); }},
      {"help beside a title", false,
       [](World& world) { set(world, 2, "AXHelp", std::string("help")); }},
      {"caret", true,
       [](World& world) {
         set(world, 3, "AXSelectedTextRange", ax::Range{1, 0});
       }},
      {"selection", true,
       [](World& world) {
         set(world, 3, "AXSelectedTextRange", ax::Range{1, 3});
       }},
      {"no focus", true, [](World& world) { world.applications[0].focusedElement = 0; }},
      {"element moved", true, [=](World& world) { element(world, 2).frame->y += 1; }},
      {"element hidden", true, [=](World& world) { element(world, 2).frame.reset(); }},
      {"element removed", true, [=](World& world) { element(world, 2).removed = true; }},
      {"element of another role", true,
       [=](World& world) { element(world, 2).role = "AXCheckBox"; }},
      {"element outside", false, [=](World& world) { element(world, 7).frame->y += 1; }},
      {"element's actions", false, [=](World& world) { element(world, 2).actions.clear(); }},
      {"unknown attribute", false,
       [](World& world) { set(world, 2, "AXBanana", std::string("x")); }},
      {"application's hang", false, [](World& world) { world.applications[0].hangs = true; }},
      {"focus by record", false, [](World& world) { world.applications[0].focusByRecord = 7; }},
  };
}

TEST(picture_digests, differ_exactly_when_the_drawn_windows_do) {
  const World world = parseWorld(desk);
  const Picture before = windowOnGrey(world);
  for (const Change& change : changes()) {
    World changed = world;
    change.make(changed);
    const Picture after = windowOnGrey(changed);
    EXPECT_EQ(digest(before) != digest(after), change.shows) << change.name;
    EXPECT_EQ(drawPng(before) != drawPng(after), change.shows) << change.name;
  }
}

TEST(picture_digests, differ_exactly_when_the_drawn_surroundings_do) {
  const Picture grey = windowOnGrey(parseWorld(desk));
  const Picture screen = screenPicture(parseWorld(desk));
  struct Case {
    const char* name;
    const Picture& picture;
    bool shows;
    std::function<void(Picture&)> make;
  };
  const Case cases[] = {
      {"grey", grey, true, [](Picture& picture) { picture.backgroundGrey = 0.4; }},
      {"desktop", grey, true, [](Picture& picture) { picture.backgroundGrey.reset(); }},
      {"source", grey, true, [](Picture& picture) { picture.source.x = 5; }},
      {"width", grey, true, [](Picture& picture) { picture.width = 301; }},
      {"pointer", grey, true,
       [](Picture& picture) {
         picture.pointer = Point{9, 9};
       }},
      {"a menu bar not shown", grey, false,
       [](Picture& picture) { picture.menuBarTitle = "Mail"; }},
      {"displays not shown", grey, false,
       [](Picture& picture) {
         picture.displays.push_back({0, 0, 9, 9});
       }},
      {"menu bar", screen, true, [](Picture& picture) { picture.menuBarTitle = "Mail"; }},
      {"display", screen, true, [](Picture& picture) { picture.displays.pop_back(); }},
      {"pointer moved", screen, true, [](Picture& picture) { picture.pointer->x -= 9; }},
      {"window gone", screen, true, [](Picture& picture) { picture.windows.clear(); }},
      {"a window elsewhere", screen, false,
       [](Picture& picture) {
         picture.windows.push_back(picture.windows[0]);
         picture.windows[1].window.frame = {5000, 5000, 100, 100};
       }},
  };
  for (const Case& each : cases) {
    Picture changed = each.picture;
    each.make(changed);
    EXPECT_EQ(digest(each.picture) != digest(changed), each.shows) << each.name;
    EXPECT_EQ(drawPng(each.picture) != drawPng(changed), each.shows) << each.name;
  }
}

TEST(drawing, survives_any_frame_and_any_text) {
  constexpr double huge = 1e308;
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::nan("");
  const Rect frames[] = {{nan, 0, 10, 10},           {0, 0, nan, nan},       {0, 0, infinity, 10},
                         {-huge, -huge, huge, huge}, {0, 0, huge, huge},     {0, 0, -5, -5},
                         {40, 80, 0.1, 0.1},         {-1e6, -1e6, 3e6, 3e6}, {huge, huge, 1, 1}};
  const char* roles[] = {"AXGroup",
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
  std::string longText;
  for (int i = 0; i < 3000; ++i) longText += "long 你好 ";
  const std::string texts[] = {"", "\xFF\xED\xA0\x80", std::string(3, '\0'), "😀\n\nשלום", longText};
  World world = parseWorld(desk);
  const Element button = world.applications[0].elements[1];
  for (const Rect& frame : frames) {
    Picture picture = windowOnGrey(world);
    picture.windows[0].elements.clear();
    ElementId id = 0;
    for (const char* role : roles) {
      Element element = button;
      element.id = ++id;
      element.role = role;
      element.frame = frame;
      element.attributes["AXTitle"] = element.attributes["AXValue"] =
          texts[static_cast<std::size_t>(id) % std::size(texts)];
      element.attributes["AXSelectedTextRange"] = ax::Range{-7, 1'000'000'000'000};
      picture.windows[0].elements.push_back(element);
      picture.windows[0].focused = id;
    }
    picture.windows[0].window.scrolledLines = {nan, huge};
    EXPECT_TRUE(drawPng(picture).has_value());
    picture.windows[0].window.frame = frame;
    EXPECT_TRUE(drawPng(picture).has_value());
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
