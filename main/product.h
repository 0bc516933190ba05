#pragma once

#include <string_view>

namespace driver {

/// The prefix of all identifiers of this product's own applications and queues.
inline constexpr std::string_view productIdentifier = "com.zentrove.desk";

}  // namespace driver
