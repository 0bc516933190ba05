#include "accessibility/scope.h"

#include <cstddef>
#include <string_view>

#include "main/globals.h"
#include "platform/text.h"

namespace driver {

namespace {

constexpr std::string_view titleSeparator = " \u2014 ";
constexpr std::string_view developmentHostPrefix = "[extension development host] ";

}  // namespace

bool inScope(const std::optional<std::string>& title) {
  const std::optional<std::string>& scope = globals().windowScope;
  if (!scope) return true;
  const std::string folded = text::trimmedBlanks(text::lowercase(title.value_or("")));
  // Editors title a window with the document, the folder and themselves. An extension that is being
  // developed runs in a window whose title says so first.
  std::string_view rest = folded;
  if (rest.starts_with(developmentHostPrefix)) rest.remove_prefix(developmentHostPrefix.size());
  while (true) {
    const std::size_t end = rest.find(titleSeparator);
    if (text::equal(text::trimmedBlanks(rest.substr(0, end)), *scope)) return true;
    if (end == std::string_view::npos) return false;
    rest.remove_prefix(end + titleSeparator.size());
  }
}

}  // namespace driver
