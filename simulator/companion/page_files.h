#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The pages that browsers show, of the files in page/.
namespace companion {

/// A style sheet or a script by its file's name. None when there is none.
std::optional<std::string_view> pageFile(std::string_view name);

/// The page of a report, about a record in JSON, in which nothing looks like markup: whole in
/// itself.
std::string reportPage(const std::string& record);

/// The page that shows a running Mac, and loads its scripts. `nonce` marks what may run of it.
std::string livePage(const std::string& nonce);

}  // namespace companion
