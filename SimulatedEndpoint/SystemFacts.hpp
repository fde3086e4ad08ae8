#pragma once

#include <string>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// What the endpoint can see of the parts of the system that the agent changes.
struct SystemFacts {
  bool isActive = false;  ///< the extension is installed and enabled
  bool isCurrent = false;
  bool awaitsApproval = false;
  bool isProxyEnabled = false;  ///< of the first configuration
  bool isProxyConnected = false;
  bool hasFilter = false;
  bool isFilterEnabled = false;

  /// From what the files of `simulatedstate` hold; what is damaged counts as absent.
  static SystemFacts of(const Json& extension, const Json& proxies, const Json& filter);

  bool operator==(const SystemFacts&) const = default;
};

}  // namespace ostrel::simulated
