#pragma once

#include <string>
#include <vector>

#include "simulator/text/elements.h"
#include "simulator/text/gathering.h"
#include "simulator/text/now.h"
#include "simulator/text/reactions.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// Puts a world together from what the lines of its text say, in their order. What names something
/// that may come later in the text is settled at the end.
class WorldBuilder {
 public:
  /// Borrows the world, which need not be empty, and who is told what cannot be settled.
  WorldBuilder(World& world, const Complain& complain) : world_(world), complain_(complain) {}

  using Place = LinePlace;

  /// Each reads the rest of a line, and adds what it describes.
  Place addApplication(Words& words);
  Place addWindow(Words& words, const Place& application);
  Place addElement(Words& words, const Place& parent);
  Place addMenuItem(Words& words, const Place& application);
  void addPanel(Words& words);
  void addToScript(Words& words);

  /// What is so of what stands at the place, in a Mac that has run before: then its lines say all
  /// there is, and nothing comes of itself.
  void addNow(Words& words, const Place& place) { now_.add(words, place); }

  /// Throws when the process id is in use.
  void claimPid(const Words& words, Pid pid) const;

  /// The world so far.
  World& world() { return world_; }

  /// Settles what elements name. The builder is spent.
  void settleElements();

  /// The same for a whole world, which is complete then.
  void finish();

 private:
  struct PlacedLink {
    Spot spot;
    std::size_t application;
    ElementId element;
    LinkDraft link;
  };
  /// An element whose line names others.
  struct PlacedElement {
    Spot spot;
    std::size_t application;
    ElementId element;
  };
  struct PlacedParent {
    PlacedElement child;
    std::string label;
  };
  struct PendingHappening {
    Scripted scripted;
    Line line;
  };

  void finishLater();
  void addLinks(const Words& words, const Place& place, std::vector<LinkDraft> links);
  void addToSheets(const Words& words, const Place& place, Element& element, const Window& window,
                   bool closed);
  void addHabits(const Words& words, const Place& place, const ElementDraft& draft);
  void addCopies(const Words& words, Application& application, const Place& place,
                 std::int64_t count);
  void settlePresence(const Words& words, Application& application, Element& element,
                      const ElementDraft& draft);
  void settleParent(const PlacedParent& placed);
  void focus(const Words& words, Application& application, Element& element);
  void settleLink(const PlacedLink& placed);
  void settleNames();
  void noteReactions(const PlacedElement& placed);
  void noteLabels(const std::vector<Reaction>& list);
  void noteAddedLabels(const Addition& addition);
  void settleReactions();
  void settleReactions(const PlacedElement& placed);
  void settleEach(const ReactionPlace& place, std::vector<Reaction>& reactions);
  void readScript();
  void settleScript();

  bool isTaken(WindowNumber number) const;
  WindowNumber newNumber(const Words& words) const;

  World& world_;
  const Complain& complain_;
  std::vector<PlacedLink> links_;
  std::vector<PlacedElement> reactions_;
  KnownLabels labels_{world_};
  std::vector<PlacedParent> furtherParents_;
  std::vector<PlacedParent> conditions_;
  std::vector<PlacedElement> composers_;
  std::vector<PendingHappening> script_;
  NowLines now_{world_};
  std::vector<bool> withoutFocusedWindow_;  // by application
};

}  // namespace simulator
