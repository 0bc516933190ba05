#include "simulator/drawing/digest.h"

#include <bit>
#include <cstring>
#include <string_view>

#include "simulator/drawing/look.h"

namespace simulator {

namespace {

/// Mixes values into one number, eight bytes at a time. Written out here, for std::hash may give
/// another number on another machine, and traces hold it.
class Digest {
 public:
  std::uint64_t value() const { return value_; }

  void add(std::uint64_t word) {
    value_ = (value_ ^ word) * 0x9E3779B97F4A7C15U;
    value_ ^= value_ >> 32;
  }

  void add(std::int64_t number) { add(static_cast<std::uint64_t>(number)); }
  void add(bool flag) { add(std::uint64_t{flag}); }
  void add(double number) { add(std::bit_cast<std::uint64_t>(number)); }

  /// The length comes first, so that no two texts run together as two others would.
  void add(std::string_view text) {
    add(std::uint64_t{text.size()});
    while (!text.empty()) {
      std::uint64_t word = 0;
      const std::size_t length = text.size() < sizeof word ? text.size() : sizeof word;
      std::memcpy(&word, text.data(), length);
      add(word);
      text.remove_prefix(length);
    }
  }

  void add(Point point) {
    add(point.x);
    add(point.y);
  }

  void add(const Rect& rect) {
    add(rect.x);
    add(rect.y);
    add(rect.width);
    add(rect.height);
  }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

void addElement(Digest& digest, const ElementLook& look) {
  const auto flags = static_cast<std::uint64_t>(look.control) << 4U |
                     std::uint64_t{look.enabled} << 3U | std::uint64_t{look.focused} << 2U |
                     std::uint64_t{look.hovered} << 1U | std::uint64_t{look.selected};
  digest.add(flags);
  digest.add(look.frame);
  digest.add(look.label);
  digest.add(look.text);
  digest.add(look.level);
  digest.add(look.selection.location);
  digest.add(look.selection.length);
  if (look.sight) digest.add(*look.sight);
}

void addWindow(Digest& digest, const WindowLook& look) {
  digest.add(look.frame);
  digest.add(look.title);
  digest.add(look.titleBar);
  digest.add(look.sheet);
  digest.add(look.key);
  digest.add(look.kind == ApplicationKind::chromium);
  digest.add(look.scrolledLines);
  digest.add(look.sharedAs);
  digest.add(std::uint64_t{look.elements.size()});
  for (const ElementLook& element : look.elements) addElement(digest, element);
}

void addCover(Digest& digest, const Cover& cover) {
  digest.add(cover.frame);
  digest.add(cover.dimmingAlpha);
  for (const CoverPicture& picture : cover.pictures) {
    digest.add(static_cast<std::uint64_t>(picture.portrait.kind));
    digest.add(picture.portrait.name);
    digest.add(picture.frame);
    digest.add(picture.isRound);
  }
  for (const cover::Label& label : cover.labels) {
    digest.add(label.text);
    digest.add(label.font.size);
    digest.add(label.font.weight == cover::Weight::semibold);
    digest.add(label.alpha);
    digest.add(label.frame);
  }
}

}  // namespace

std::uint64_t digest(const Picture& picture) {
  Digest digest;
  digest.add(picture.width);
  digest.add(picture.height);
  digest.add(picture.source);
  digest.add(picture.backgroundGrey.has_value());
  if (picture.backgroundGrey) {
    digest.add(*picture.backgroundGrey);
  } else {
    digest.add(picture.menuBarTitle);
    digest.add(std::uint64_t{picture.menuTitles.size()});
    for (const std::string& title : picture.menuTitles) digest.add(title);
    for (const Rect& display : picture.displays) digest.add(display);
    digest.add(picture.marksSharing);
  }
  digest.add(picture.pointer.has_value());
  if (picture.pointer) digest.add(*picture.pointer);
  for (const WindowPicture& window : picture.windows) {
    const auto look = lookOf(picture, window);
    if (look) addWindow(digest, *look);
  }
  for (const Cover& cover : picture.covers) addCover(digest, cover);
  digest.add(picture.locked);
  if (picture.locked) digest.add(picture.userName);
  return digest.value();
}

}  // namespace simulator
