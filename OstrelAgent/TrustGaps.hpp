#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

/// What trust settings protect when the daemon does not say so itself.
namespace TrustGaps {

/// The ecosystems that a trust setting protects; none for a setting that is not known.
std::vector<std::string> legacyKnobProtects(std::string_view env);

}  // namespace TrustGaps

}  // namespace ostrel
