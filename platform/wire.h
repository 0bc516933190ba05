#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/datum.h"
#include "platform/ax.h"
#include "platform/cover.h"
#include "platform/event_tap.h"
#include "platform/pasteboard.h"
#include "platform/power.h"
#include "platform/process.h"
#include "platform/quartz.h"
#include "platform/share.h"
#include "platform/types.h"
#include "platform/window_server.h"
#include "platform/workspace.h"

/// The seam's structures as they travel between the simulated side of the seam and a simulated Mac.
/// Not part of the Mac's executable.
namespace platform {

/// An answer that may be a platform error: exactly one of the two is there.
struct Thrown {
  std::optional<std::string> error;
  driver::Datum value;
};

/// An element of the simulated Mac.
struct ElementReference {
  Pid pid = 0;
  std::int64_t id = 0;  // 0 is the application itself
  friend bool operator==(const ElementReference&, const ElementReference&) = default;
};

/// The kinds of attribute values as they travel: a list of this number and the payload.
enum class ValueKind : std::uint8_t {
  opaque,  // integer: its hash
  text,
  boolean,
  integer,
  number,
  element,  // ElementReference
  list,     // list of values
  point,
  size,
  rect,
  range,
};

/// One attribute as it travels; `value` is nothing when there is none.
struct WireSlot {
  driver::Datum value;
  ax::Error error = ax::Error::success;
};

/// What an accessibility message gave.
struct WireReadings {
  std::vector<WireSlot> slots;
  ax::Outcome outcome;
};

/// What a read of action names gave.
struct WireActionNames {
  std::vector<std::string> names;
  ax::Outcome outcome;
};

/// What lies at a point.
struct WireHit {
  std::optional<ElementReference> element;
  ax::Outcome outcome;
};

struct EventField {
  std::uint32_t field = 0;
  std::int64_t value = 0;
};

/// An event as it is when it is posted.
struct EventImage {
  std::int64_t identity = 0;  // the same for every posting of one event
  std::uint32_t type = 0;
  Point location;
  std::optional<std::uint64_t> flags;  // absent: those of the user's keyboard
  bool fromSource = false;
  std::optional<Point> windowLocation;
  std::vector<EventField> publicFields;   // written with the public setter
  std::vector<EventField> privateFields;  // written with the private setter
  std::int32_t vertical = 0;              // scroll lines
  std::int32_t horizontal = 0;
  std::int64_t keyCode = 0;
  std::string text;  // UTF-16 units, two bytes each, the low one first; of a key event
};

/// A screenshot's filter as it travels.
struct WireFilter {
  std::int32_t kind = 0;  // the index in share::Filter
  std::uint32_t display = 0;
  std::vector<WindowNumber> windows;
};

/// What comes to a main flow, as it travels: the kind, the number of what it is for (a piece of
/// work, a signal, a tap), and for a tap event what happened.
enum class ItemKind : std::uint8_t {
  work,
  signal,
  tapEvent,
  terminationRequest,
  loopEnd,
  screenChange,
};
struct WireItem {
  ItemKind kind = ItemKind::work;
  std::int64_t number = 0;
  std::int64_t serial = 0;  // of a tap event, for the verdict
  tap::Event event;
};

/// A stream that the system stopped.
struct WireStop {
  std::int64_t stream = 0;
  std::string description;
};

/// A panel of the cover as it travels: pictures by their numbers.
struct WirePicture {
  std::int64_t image = 0;
  Rect frame;
  bool isRound = false;
};
struct WirePanel {
  Rect frame;
  std::int64_t level = 0;
  double dimmingAlpha = 0;
  std::vector<WirePicture> pictures;
  std::vector<cover::Label> labels;
};

/// Shareable content as it travels.
struct WireContent {
  std::vector<share::Window> windows;
  std::vector<share::Display> displays;
};

}  // namespace platform

namespace driver {

template <>
struct Members<Point> {
  static constexpr auto members = std::tuple{&Point::x, &Point::y};
};
template <>
struct Members<Size> {
  static constexpr auto members = std::tuple{&Size::width, &Size::height};
};
template <>
struct Members<Rect> {
  static constexpr auto members = std::tuple{&Rect::x, &Rect::y, &Rect::width, &Rect::height};
};
template <>
struct Members<ax::Range> {
  static constexpr auto members = std::tuple{&ax::Range::location, &ax::Range::length};
};
template <>
struct Members<ax::Outcome> {
  static constexpr auto members = std::tuple{&ax::Outcome::error, &ax::Outcome::timedOut};
};
template <>
struct Members<platform::Thrown> {
  static constexpr auto members = std::tuple{&platform::Thrown::error, &platform::Thrown::value};
};
template <>
struct Members<platform::ElementReference> {
  static constexpr auto members =
      std::tuple{&platform::ElementReference::pid, &platform::ElementReference::id};
};
template <>
struct Members<platform::WireSlot> {
  static constexpr auto members =
      std::tuple{&platform::WireSlot::value, &platform::WireSlot::error};
};
template <>
struct Members<platform::WireReadings> {
  static constexpr auto members =
      std::tuple{&platform::WireReadings::slots, &platform::WireReadings::outcome};
};
template <>
struct Members<platform::WireActionNames> {
  static constexpr auto members =
      std::tuple{&platform::WireActionNames::names, &platform::WireActionNames::outcome};
};
template <>
struct Members<platform::WireHit> {
  static constexpr auto members =
      std::tuple{&platform::WireHit::element, &platform::WireHit::outcome};
};

// An event's fields travel as one flat list: every post carries a dozen.
template <>
struct OwnForm<std::vector<platform::EventField>> {
  static Datum pack(const std::vector<platform::EventField>& fields) {
    Datum::List list;
    list.reserve(2 * fields.size());
    for (const auto& [field, value] : fields) {
      list.emplace_back(static_cast<std::int64_t>(field));
      list.emplace_back(value);
    }
    return Datum(std::move(list));
  }
  static std::vector<platform::EventField> unpack(const Datum& datum) {
    const auto& list = datum_detail::as<Datum::List>(datum);
    if (list.size() % 2 != 0) throw MalformedDatum();
    std::vector<platform::EventField> fields;
    fields.reserve(list.size() / 2);
    for (std::size_t i = 0; i < list.size(); i += 2) {
      fields.push_back(
          {driver::unpack<std::uint32_t>(list[i]), driver::unpack<std::int64_t>(list[i + 1])});
    }
    return fields;
  }
};
template <>
struct Members<platform::EventImage> {
  using Event = platform::EventImage;
  static constexpr auto members = std::tuple{
      &Event::identity,   &Event::type,           &Event::location,     &Event::flags,
      &Event::fromSource, &Event::windowLocation, &Event::publicFields, &Event::privateFields,
      &Event::vertical,   &Event::horizontal,     &Event::keyCode,      &Event::text};
};
template <>
struct Members<platform::WireFilter> {
  static constexpr auto members = std::tuple{
      &platform::WireFilter::kind, &platform::WireFilter::display, &platform::WireFilter::windows};
};
template <>
struct Members<share::Owner> {
  static constexpr auto members =
      std::tuple{&share::Owner::pid, &share::Owner::bundleIdentifier, &share::Owner::name};
};
template <>
struct Members<share::Window> {
  static constexpr auto members =
      std::tuple{&share::Window::number, &share::Window::frame, &share::Window::title,
                 &share::Window::layer, &share::Window::owner};
};
template <>
struct Members<share::Display> {
  static constexpr auto members = std::tuple{&share::Display::id, &share::Display::frame};
};
template <>
struct Members<platform::WireContent> {
  static constexpr auto members =
      std::tuple{&platform::WireContent::windows, &platform::WireContent::displays};
};
template <>
struct Members<share::Configuration> {
  static constexpr auto members =
      std::tuple{&share::Configuration::width, &share::Configuration::height,
                 &share::Configuration::source, &share::Configuration::backgroundGrey};
};
template <>
struct Members<share::StreamConfiguration> {
  using Configuration = share::StreamConfiguration;
  static constexpr auto members = std::tuple{
      &Configuration::width,      &Configuration::height, &Configuration::frameIntervalSeconds,
      &Configuration::queueDepth, &Configuration::name,   &Configuration::includesChildWindows};
};
template <>
struct Members<platform::WireItem> {
  static constexpr auto members =
      std::tuple{&platform::WireItem::kind, &platform::WireItem::number,
                 &platform::WireItem::serial, &platform::WireItem::event};
};
template <>
struct Members<platform::WireStop> {
  static constexpr auto members =
      std::tuple{&platform::WireStop::stream, &platform::WireStop::description};
};
template <>
struct Members<platform::WirePicture> {
  static constexpr auto members =
      std::tuple{&platform::WirePicture::image, &platform::WirePicture::frame,
                 &platform::WirePicture::isRound};
};
template <>
struct Members<platform::WirePanel> {
  using Panel = platform::WirePanel;
  static constexpr auto members = std::tuple{&Panel::frame, &Panel::level, &Panel::dimmingAlpha,
                                             &Panel::pictures, &Panel::labels};
};
template <>
struct Members<cover::Font> {
  static constexpr auto members = std::tuple{&cover::Font::size, &cover::Font::weight};
};
template <>
struct Members<cover::Label> {
  static constexpr auto members = std::tuple{&cover::Label::text, &cover::Label::font,
                                             &cover::Label::alpha, &cover::Label::frame};
};
template <>
struct Members<tap::Event> {
  using Event = tap::Event;
  static constexpr auto members =
      std::tuple{&Event::type,   &Event::location, &Event::flags,   &Event::sourceUserData,
                 &Event::deltaX, &Event::deltaY,   &Event::keyCode, &Event::targetProcess};
};
template <>
struct Members<pasteboard::Representation> {
  static constexpr auto members =
      std::tuple{&pasteboard::Representation::type, &pasteboard::Representation::data};
};
template <>
struct Members<power::Assertion> {
  static constexpr auto members = std::tuple{&power::Assertion::status, &power::Assertion::id};
};
template <>
struct Members<process::Version> {
  static constexpr auto members = std::tuple{&process::Version::major, &process::Version::minor};
};
template <>
struct Members<windowserver::Window> {
  using Window = windowserver::Window;
  static constexpr auto members =
      std::tuple{&Window::number, &Window::ownerPid, &Window::layer, &Window::name,
                 &Window::x,      &Window::y,        &Window::width, &Window::height};
};
template <>
struct Members<windowserver::Session> {
  static constexpr auto members =
      std::tuple{&windowserver::Session::locked, &windowserver::Session::onConsole};
};
template <>
struct Members<windowserver::DisplayMode> {
  static constexpr auto members =
      std::tuple{&windowserver::DisplayMode::width, &windowserver::DisplayMode::pixelWidth};
};
template <>
struct Members<workspace::Application> {
  using Application = workspace::Application;
  static constexpr auto members =
      std::tuple{&Application::pid,        &Application::bundleIdentifier, &Application::name,
                 &Application::bundlePath, &Application::active,           &Application::hidden};
};

}  // namespace driver
