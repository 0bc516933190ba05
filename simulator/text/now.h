#pragma once

#include <vector>

#include "simulator/text/gathering.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// Worlds of Macs that have run before. They begin with a line `clock`; lines that begin with `now`
/// say of what they stand in what other lines cannot say.
namespace simulator {

/// Where a line stands: what the lines below it, indented further, belong to.
struct LinePlace {
  enum class Kind { top, application, window, element, other, unread };
  Kind kind = Kind::top;
  const char* statement = "";   // of an `other`
  std::size_t application = 0;  // index
  WindowNumber window = 0;      // of a window and of the elements in it
  ElementId element = 0;        // 0 for an application and for a window without an element
};

/// Words of `now` lines that stand for no member of a structure.
namespace now_words {
inline constexpr const char* windowOrder = "window-order";  // the windows, front to back
inline constexpr const char* lastElement = "last-element";  // the largest id given so far
inline constexpr const char* habits = "habits";             // of the element
inline constexpr const char* itsElement = "its-element";  // of a window: what is so of its element
}  // namespace now_words

/// No more elements than that in an application that has run before.
inline constexpr ElementId elementIdMax = 500'000;

/// Whether a world's text began with `clock`.
inline bool hasRunBefore(const World& world) { return world.resumption.has_value(); }

/// Throws unless it did: the word that was read last is of such worlds alone.
void requireEarlierRun(const Words& words, const World& world, const char* word);

/// Reads what follows `clock`.
void readClock(Words& words, World& world);

/// Reads what follows `id`.
ElementId readElementId(Words& words);

/// Reads a line `gone`, behind that word: an element that has gone with its window, of which
/// something is still to come.
void readGone(Words& words, World& world, const LinePlace& place);

/// The element becomes the next one of the application, or, unless it is 0, the one with this id.
/// References to other elements are void from then on.
Element& putElement(const Words& words, const World& world, Application& application,
                    Element element, ElementId id);

/// The `now` lines of a world: they are read when all others have been.
class NowLines {
 public:
  /// Borrows the world.
  explicit NowLines(World& world) : world_(world) {}

  /// Takes what stands behind the first word.
  void add(Words& words, const LinePlace& place);

  void read(const Complain& complain) const;

 private:
  struct PlacedLine {
    LinePlace place;
    Line line;
  };

  void readThose(bool ofElements, const Complain& complain) const;

  World& world_;
  std::vector<PlacedLine> lines_;
};

}  // namespace simulator
