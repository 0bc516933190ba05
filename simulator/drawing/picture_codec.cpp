#include "simulator/drawing/picture_codec.h"

#include <utility>

#include "platform/value_codec.h"

namespace simulator {

namespace {

/// An attribute by its name.
struct Attribute {
  std::string name;
  driver::Datum value;
};

/// What is drawn of an element.
struct DrawnElement {
  ElementId id = 0;
  std::string role;
  std::optional<Rect> frame;
  std::vector<Attribute> attributes;
};

/// What is drawn of a window.
struct DrawnWindow {
  WindowNumber number = 0;
  std::optional<std::string> title;
  Rect frame;
  std::int64_t layer = 0;
  WindowNumber sheetOf = 0;
  Point scrolledLines;
  std::optional<Point> hover;
  std::string owner;
  ApplicationKind kind = ApplicationKind::appKit;
  bool key = false;
  std::vector<DrawnElement> elements;
  ElementId focused = 0;
  std::string sharedAs;
};

/// What is drawn of a picture, but for its covers.
struct DrawnScreens {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  Rect source;
  std::optional<double> backgroundGrey;
  std::vector<DrawnWindow> windows;
  std::optional<Point> pointer;
  std::string menuBarTitle;
  std::vector<std::string> menuTitles;
  std::vector<Rect> displays;
  std::vector<Cover> covers;
  bool locked = false;
  std::string userName;
  bool marksSharing = false;
};

}  // namespace

}  // namespace simulator

namespace driver {

template <>
struct Members<simulator::Attribute> {
  using Attribute = simulator::Attribute;
  static constexpr auto members = std::tuple{&Attribute::name, &Attribute::value};
};
template <>
struct Members<simulator::DrawnElement> {
  using Element = simulator::DrawnElement;
  static constexpr auto members =
      std::tuple{&Element::id, &Element::role, &Element::frame, &Element::attributes};
};
template <>
struct Members<simulator::DrawnWindow> {
  using Window = simulator::DrawnWindow;
  static constexpr auto members = std::tuple{
      &Window::number,        &Window::title,   &Window::frame,   &Window::layer, &Window::sheetOf,
      &Window::scrolledLines, &Window::hover,   &Window::owner,   &Window::kind,  &Window::key,
      &Window::elements,      &Window::focused, &Window::sharedAs};
};
template <>
struct Members<simulator::Portrait> {
  using Portrait = simulator::Portrait;
  static constexpr auto members = std::tuple{&Portrait::kind, &Portrait::name};
};
template <>
struct Members<simulator::CoverPicture> {
  using Picture = simulator::CoverPicture;
  static constexpr auto members =
      std::tuple{&Picture::portrait, &Picture::frame, &Picture::isRound};
};
template <>
struct Members<simulator::Cover> {
  using Cover = simulator::Cover;
  static constexpr auto members =
      std::tuple{&Cover::owner, &Cover::number,       &Cover::window,   &Cover::frame,
                 &Cover::level, &Cover::dimmingAlpha, &Cover::pictures, &Cover::labels};
};
template <>
struct Members<simulator::DrawnScreens> {
  using Screens = simulator::DrawnScreens;
  static constexpr auto members = std::tuple{
      &Screens::width,       &Screens::height,  &Screens::source,       &Screens::backgroundGrey,
      &Screens::windows,     &Screens::pointer, &Screens::menuBarTitle, &Screens::menuTitles,
      &Screens::displays,    &Screens::covers,  &Screens::locked,       &Screens::userName,
      &Screens::marksSharing};
};

}  // namespace driver

namespace simulator {

namespace {

/// Elements, lists and what nothing looks into are not drawn.
struct PlainPacker {
  std::optional<driver::Datum> operator()(const Opaque& /*value*/) const { return std::nullopt; }
  std::optional<driver::Datum> operator()(ElementLink /*value*/) const { return std::nullopt; }
  std::optional<driver::Datum> operator()(const std::vector<ElementId>& /*value*/) const {
    return std::nullopt;
  }
  template <class T>
  std::optional<driver::Datum> operator()(const T& value) const {
    return platform::packPlain(value);
  }
};

DrawnElement drawn(const Element& element) {
  DrawnElement result{element.id, element.role, element.frame, {}};
  for (const auto& [name, value] : element.attributes) {
    if (auto packed = std::visit(PlainPacker{}, value)) {
      result.attributes.push_back({name, std::move(*packed)});
    }
  }
  return result;
}

Element elementOf(DrawnElement drawn) {
  Element element;
  element.id = drawn.id;
  element.role = std::move(drawn.role);
  element.frame = drawn.frame;
  for (const Attribute& each : drawn.attributes) {
    auto value = platform::unpackPlain<AttributeValue>(platform::Tagged(each.value));
    if (!value) throw driver::MalformedDatum();
    element.attributes.emplace(each.name, std::move(*value));
  }
  return element;
}

DrawnWindow drawn(const WindowPicture& picture) {
  const Window& window = picture.window;
  DrawnWindow result{window.number,   window.title,         window.frame, window.layer,
                     window.sheetOf,  window.scrolledLines, window.hover, picture.owner,
                     picture.kind,    picture.key,          {},           picture.focused,
                     picture.sharedAs};
  for (const Element& element : picture.elements) result.elements.push_back(drawn(element));
  return result;
}

WindowPicture windowOf(DrawnWindow drawn) {
  WindowPicture picture;
  picture.window.number = drawn.number;
  picture.window.title = std::move(drawn.title);
  picture.window.frame = drawn.frame;
  picture.window.layer = drawn.layer;
  picture.window.sheetOf = drawn.sheetOf;
  picture.window.scrolledLines = drawn.scrolledLines;
  picture.window.hover = drawn.hover;
  picture.owner = std::move(drawn.owner);
  picture.kind = drawn.kind;
  picture.key = drawn.key;
  for (DrawnElement& each : drawn.elements) picture.elements.push_back(elementOf(std::move(each)));
  picture.focused = drawn.focused;
  picture.sharedAs = std::move(drawn.sharedAs);
  return picture;
}

}  // namespace

std::string encodedPicture(const Picture& picture) {
  DrawnScreens screens{picture.width,
                       picture.height,
                       picture.source,
                       picture.backgroundGrey,
                       {},
                       picture.pointer,
                       picture.menuBarTitle,
                       picture.menuTitles,
                       picture.displays,
                       picture.covers,
                       picture.locked,
                       picture.userName,
                       picture.marksSharing};
  for (const WindowPicture& window : picture.windows) screens.windows.push_back(drawn(window));
  std::string bytes;
  driver::encode(driver::pack(screens), bytes);
  return bytes;
}

Picture decodedPicture(std::string_view bytes) {
  auto screens = driver::unpack<DrawnScreens>(driver::decode(bytes));
  if (!bytes.empty()) throw driver::MalformedDatum();
  Picture picture{screens.width,
                  screens.height,
                  screens.source,
                  screens.backgroundGrey,
                  {},
                  screens.pointer,
                  screens.menuBarTitle,
                  screens.menuTitles,
                  screens.displays,
                  screens.covers,
                  screens.locked,
                  screens.userName,
                  screens.marksSharing};
  for (DrawnWindow& window : screens.windows)
    picture.windows.push_back(windowOf(std::move(window)));
  return picture;
}

}  // namespace simulator
