#pragma once

#include <expected>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// What was ordered of the simulated Mac and its stand-ins: one object, a member an order.
class Overrides {
 public:
  /// The files take real paths.
  Overrides(Files& files, const HostRoot& root);

  /// An empty object when nothing is ordered or the file is damaged.
  Json all() const;

  /// The order of a name, null when there is none.
  Json order(const std::string& name) const;

  /// Null takes the order back.
  [[nodiscard]] std::expected<void, std::string> give(const std::string& name, const Json& order) const;

  /// Takes all back.
  [[nodiscard]] std::expected<void, std::string> clear() const;

 private:
  Files& files_;
  const std::string path_;
  const std::string lockPath_;
};

}  // namespace ostrel::simulated
