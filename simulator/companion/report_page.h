#pragma once

#include <string>

namespace companion {

/// The page of a report, about a record in JSON, in which nothing looks like markup.
std::string reportPage(const std::string& record);

}  // namespace companion
