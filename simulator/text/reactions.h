#pragma once

#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "simulator/text/reaction_arguments.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// What an element can do when it is clicked, and an application by itself: a row of the table of
/// reactions.
struct ReactionKind {
  const char* phrase;  // the words that it begins with
  const ReactionArguments& arguments;
  const char* description;  // what it does
  ReactionEffect* effect;
  bool isOwn = false;  // it is about the element itself, unless it names another
};

/// All there are.
std::span<const ReactionKind> reactionKinds();

/// What can be written for it: its phrase and what follows.
std::string formOf(const ReactionKind& kind);

/// Reads reactions between semicolons, up to the end of the line, `press:`, `right:`, `double:` or
/// `submit:`.
std::vector<Reaction> readReactions(Words& words, const char* owner);

/// The reaction as `readReactions` reads it back.
/// Applications are written as `writtenName` writes them.
std::string reactionText(const Reaction& reaction, const World* world = nullptr);
std::string reactionsText(const std::vector<Reaction>& reactions, const World* world = nullptr);

/// The labels that reactions may name: those of a world's elements, which are looked up once for
/// each application, and those that only reactions give.
class KnownLabels {
 public:
  /// Borrows the world, whose elements stay as they are meanwhile.
  explicit KnownLabels(const World& world) : world_(world) {}

  const World& world() const { return world_; }
  void addComing(const std::string& label) { coming_.insert(label); }
  bool has(const Application& application, const std::string& label);
  void addComingTitle(const std::string& title) { comingTitles_.insert(title); }
  bool isComingTitle(const std::string& title) const { return comingTitles_.contains(title); }

 private:
  const World& world_;
  std::set<std::string> coming_;
  std::set<std::string> comingTitles_;
  std::map<Pid, std::set<std::string>> held_;
};

/// Where reactions are written.
struct ReactionPlace {
  Spot spot;
  Pid pid = 0;  // of the application whose reactions they are
  bool hasElement = true;
};

/// Settles which applications are meant. Throws WorldError when something that a reaction names is
/// not there.
void settleReaction(const ReactionPlace& place, KnownLabels& labels, Reaction& reaction);
/// Settles only which applications are meant: the rest was there once, and may be gone.
void settleApplications(const Spot& spot, const World& world, std::vector<Reaction>& reactions);
void settleReactions(const ReactionPlace& place, KnownLabels& labels,
                     std::vector<Reaction>& reactions);

}  // namespace simulator
