#pragma once

#include <string_view>

namespace ostrel::simulated {

/// Scenario files that the helper needs wherever its bundle lies, as text.
extern const std::string_view compiledInitialScenario;
extern const std::string_view compiledUninstalledScenario;

}  // namespace ostrel::simulated
