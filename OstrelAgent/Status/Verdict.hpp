#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "OstrelAgent/Status/Snapshot.hpp"

namespace ostrel {

/// The overall judgement of the device.
struct ProtectionVerdict {
  enum class Case { isProtected, protectedWithOff, needsAttention, notProtected, notReported };

  Case kind = Case::notReported;
  std::int64_t count = 0;  ///< protections off by policy, of `protectedWithOff`

  /// The verdict for the daemon's word, compared exactly.
  static ProtectionVerdict fromWire(std::string_view wire, std::int64_t offByPolicy);
  static ProtectionVerdict of(const Snapshot& snapshot);

  /// Tooltip of the menu-bar icon.
  std::string menuBarDescription() const;

  /// Word of the panel's header.
  std::string headerText() const;

  bool operator==(const ProtectionVerdict&) const = default;
};

}  // namespace ostrel
