#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/Status/Snapshot.hpp"

namespace ostrel {

/// Container runtimes in which a download was blocked, because they do not trust the device certificate.
struct ContainerBlock {
  std::vector<std::string> runtimes;
  std::optional<Date> clearsBy;

  /// The block that the runtime-trust component reports, or nullopt.
  static std::optional<ContainerBlock> read(const Snapshot::ComponentHealth& runtimeTrust);

  /// "Blocked in Podman and Colima".
  std::string text() const;

  bool operator==(const ContainerBlock&) const = default;
};

}  // namespace ostrel
