#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "OstrelAgent/Snapshot.hpp"

namespace ostrel {

/// The overall judgement of the device.
struct ProtectionVerdict {
  enum class Case { isProtected, protectedWithOff, needsAttention, notProtected, notReported };

  Case kind = Case::notReported;
  std::int64_t count = 0;  ///< protections off by policy, of `protectedWithOff`

  /// The verdict of the daemon's word, compared exactly.
  static ProtectionVerdict fromWire(std::string_view wire, std::int64_t offByPolicy);
  static ProtectionVerdict of(const Snapshot& snapshot);

  /// Tooltip of the menu-bar icon.
  std::string menuBarDescription() const;

  /// Word of the panel's header.
  std::string headerText() const;

  bool operator==(const ProtectionVerdict&) const = default;
};

/// The mark in the icon's corner: all well, needs attention or not reported, not protected.
enum class MenuBarBadge { dot, square, octagon };

/// What the status item shows.
struct MenuBarIcon {
  MenuBarBadge badge = MenuBarBadge::square;
  std::string_view symbol;  ///< system symbol for want of the glyph image
  std::string text;         ///< tooltip and accessible label

  static MenuBarIcon of(const ProtectionVerdict& verdict);

  bool operator==(const MenuBarIcon&) const = default;
};

}  // namespace ostrel
