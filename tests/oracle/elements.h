#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/oracle/json_line.h"
#include "tests/oracle/stage.h"

/// Elements of applications: their labels and texts, and the walks that find them.
namespace oracle {

bool isActionable(const std::string& role);
bool isTextRole(const std::string& role);
bool isTextInput(Stage& stage, const Element& element);

std::string roleOf(Stage& stage, const Element& element);
std::string labelOf(Stage& stage, const Element& element);

struct TextBounds {
  std::size_t elements = 40;
  std::size_t characters = 120;
};

/// The static texts in the element.
std::string innerText(Stage& stage, const Element& element, TextBounds bounds = {});

/// The text of a field, and whether that is all of it.
struct FieldText {
  std::string text;
  bool isComplete = false;
};
FieldText fieldText(Stage& stage, const Element& field);

/// The description of an element, as replies have it.
Json describe(Stage& stage, const Element& element);

/// The application of a command; its accessibility is enabled. Fails when it does not run.
Pid enabledApp(Stage& stage, const std::string& name);

/// How far a walk goes.
struct WalkBounds {
  std::size_t elements = 0;  // that are visited
  int depth = 0;             // of the deepest elements whose children are visited
};
inline constexpr WalkBounds searchBounds{20'000, 59};
inline constexpr WalkBounds readBounds{30'000, 79};

enum class Siblings { lastFirst, firstFirst };

/// Visits the roots, the last one first, and what is in them. The visit is told the depth, and
/// returns false to end the walk.
void walk(Stage& stage, const std::vector<Element>& roots, WalkBounds bounds, Siblings order,
          const std::function<bool(const Element& element, int depth)>& visit);

struct Match {
  Element element;
  std::string kind;  // "label", "label~", "role" or "hit"
};

inline constexpr Point noPoint{-1, -1};

/// The element that can be acted on at the point.
std::optional<Element> actionableAt(Stage& stage, Pid pid, Point point);

/// The best match of a label near a point.
std::optional<Match> bestMatch(Stage& stage, Pid pid, const std::string& label, Point near);

/// The labelled buttons in an element.
std::vector<Element> buttonsIn(Stage& stage, const Element& root);

}  // namespace oracle
