#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Date.hpp"

namespace ostrel {

/// Configuration of the transparent proxy: which traffic it diverts, and where to.
struct CaptureConfig {
  static constexpr std::uint16_t daemonPort = 65531;

  std::vector<std::string> capturedHosts;
  std::string daemonAddress = "127.0.0.1:" + std::to_string(daemonPort);
  int schemaVersion = 1;

  /// The configuration for a JSON list of host names, or the reason when the bytes are no such list or an
  /// empty one.
  [[nodiscard]] static std::expected<CaptureConfig, std::string> ofHostList(std::string_view bytes);

  /// The configuration as compact JSON with sorted keys.
  std::string json() const;

  /// The same with the time at which it was applied.
  std::string appliedRecord(Date appliedAt) const;

  bool operator==(const CaptureConfig&) const = default;
};

}  // namespace ostrel
