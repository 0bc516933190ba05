#include "tests/oracle/effects.h"

#include "tests/oracle/texts.h"

namespace oracle {

std::string comparableEffects(const std::string& effects) {
  std::string kept;
  for (const std::string& line : splitAt(effects, "\n")) {
    const bool enables = line.find(" AXManualAccessibility") != std::string::npos ||
                         line.find(" AXEnhancedUserInterface") != std::string::npos;
    const bool landsLater = line.find(" landing ") != std::string::npos;
    if (!line.empty() && !enables && !landsLater) kept += line + "\n";
  }
  return kept;
}

}  // namespace oracle
