#pragma once

#include <expected>
#include <functional>
#include <vector>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// One transparent-proxy configuration of this program.
struct TransparentProxyConfiguration {
  bool enabled = false;
  bool connected = false;  ///< its connection's status is "connected"

  bool operator==(const TransparentProxyConfiguration&) const = default;
};

/// The program's content filter.
struct ContentFilterConfiguration {
  bool hasProvider = false;  ///< a provider configuration exists
  bool enabled = false;

  bool operator==(const ContentFilterConfiguration&) const = default;
};

/// The system's network preferences (NETransparentProxyManager, NEFilterManager). Any thread; completions run
/// once, on a thread of the host's choosing, possibly before the call returns.
class NetworkPreferences {
 public:
  virtual ~NetworkPreferences() = default;

  using TransparentProxies = std::expected<std::vector<TransparentProxyConfiguration>, PlatformError>;
  using ContentFilter = std::expected<ContentFilterConfiguration, PlatformError>;

  virtual void loadTransparentProxies(std::function<void(TransparentProxies)> completion) = 0;
  virtual void loadContentFilter(std::function<void(ContentFilter)> completion) = 0;
};

}  // namespace ostrel
