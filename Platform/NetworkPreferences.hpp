#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// When a configuration connects or disconnects by itself.
struct OnDemandRule {
  enum class Action { connect, disconnect };
  enum class InterfaceType { any, ethernet, wiFi, cellular };

  Action action = Action::connect;
  InterfaceType interfaceType = InterfaceType::any;

  bool operator==(const OnDemandRule&) const = default;
};

/// One transparent-proxy configuration of this program.
struct TransparentProxyConfiguration {
  bool enabled = false;
  bool connected = false;       ///< its connection's status is "connected"; never saved
  std::string identifier = {};  ///< set by the host; empty until first saved
  std::string providerBundleIdentifier = {};
  std::string serverAddress = {};          ///< for display only
  std::string providerConfiguration = {};  ///< a JSON object
  std::string localizedDescription = {};
  std::vector<OnDemandRule> onDemandRules = {};
  bool onDemandEnabled = false;

  bool operator==(const TransparentProxyConfiguration&) const = default;
};

/// The program's content filter.
struct ContentFilterConfiguration {
  bool hasProvider = false;  ///< a provider configuration exists
  bool enabled = false;
  bool filterSockets = false;
  bool filterPackets = false;
  std::string dataProviderBundleIdentifier = {};
  std::string localizedDescription = {};

  bool operator==(const ContentFilterConfiguration&) const = default;
};

/// Domain of the errors of transparent proxies.
inline constexpr const char* vpnErrorDomain = "NEVPNErrorDomain";

/// Why the transparent proxies could not be loaded, with those that were loaded nevertheless.
struct TransparentProxiesError : PlatformError {
  TransparentProxiesError(PlatformError error, std::vector<TransparentProxyConfiguration> those = {})
      : PlatformError(std::move(error)), arrived(std::move(those)) {}

  std::vector<TransparentProxyConfiguration> arrived;

  bool operator==(const TransparentProxiesError&) const = default;
};

/// The system's network preferences (NETransparentProxyManager, NEFilterManager). Any thread; completions run
/// once, on a thread of the host's choosing, possibly before the call returns.
class NetworkPreferences {
 public:
  virtual ~NetworkPreferences() = default;

  using TransparentProxies =
      std::expected<std::vector<TransparentProxyConfiguration>, TransparentProxiesError>;
  using ContentFilter = std::expected<ContentFilterConfiguration, PlatformError>;

  using Done = std::expected<void, PlatformError>;

  virtual void loadTransparentProxies(std::function<void(TransparentProxies)> completion) = 0;

  /// Saves a loaded or new configuration; the completion gets it as saved, with its identifier.
  virtual void saveTransparentProxy(
      const TransparentProxyConfiguration& configuration,
      std::function<void(std::expected<TransparentProxyConfiguration, PlatformError>)> completion) = 0;

  /// Starts or removes the saved configuration of that identifier.
  virtual void startTransparentProxy(const std::string& identifier, std::function<void(Done)> completion) = 0;
  virtual void removeTransparentProxy(const std::string& identifier,
                                      std::function<void(Done)> completion) = 0;

  virtual void loadContentFilter(std::function<void(ContentFilter)> completion) = 0;

  /// Saves the program's filter and creates it if there is none.
  virtual void saveContentFilter(const ContentFilterConfiguration& configuration,
                                 std::function<void(Done)> completion) = 0;
};

}  // namespace ostrel
