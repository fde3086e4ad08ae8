#pragma once

#include <expected>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Extension/CaptureConfig.hpp"
#include "OstrelAgent/Extension/Records.hpp"
#include "Platform/Bundle.hpp"
#include "Platform/Log.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

inline constexpr const char* systemExtensionIdentifier = "tech.brenn.ostrel-agent.sysext";

/// Sets up the extension in the network preferences: capture by a transparent proxy, egress lock by a content
/// filter. Main thread; completions run there once, inside the call only where noted. Copies are
/// interchangeable.
class NetworkConfigurations {
 public:
  /// The step at which setting up the proxy failed: "load proxy prefs", "save proxy prefs" or "start proxy".
  struct ProxyFailure {
    std::string_view stage;
    PlatformError error;

    /// "save proxy prefs: ..."
    std::string description() const { return std::string(stage) + ": " + error.description; }
  };

  using ProxySaved = std::expected<void, ProxyFailure>;
  using CaptureSaved = std::expected<void, std::string>;  ///< or a sentence
  using LockSaved = std::expected<void, PlatformError>;

  NetworkConfigurations(NetworkPreferences& preferences, MainQueue& mainQueue, Log& log, Records records);

  /// The proxy configuration that the application ships, or an error text when its file cannot be used.
  [[nodiscard]] static std::expected<CaptureConfig, std::string> staticCaptureConfig(const Bundle& bundle);

  /// Saves and starts the transparent proxy with it. The completion runs inside the call when the file cannot
  /// be used.
  void saveStaticCaptureConfig(const Bundle& bundle, std::function<void(CaptureSaved)> completion) const;

  /// Saves and starts the first transparent proxy, creating one if there is none, and records the
  /// configuration.
  void saveTransparentProxyConfiguration(const CaptureConfig& captureConfig,
                                         std::function<void(ProxySaved)> completion) const;

  /// Removes every transparent proxy and logs failures.
  void removeTransparentProxies(std::function<void()> completion) const;

  /// Saves the content filter that blocks traffic around the proxy.
  void saveEgressLockConfiguration(std::function<void(LockSaved)> completion) const;

 private:
  using Proxies = std::vector<TransparentProxyConfiguration>;

  template <class Result>
  std::function<void(Result)> onMain(std::function<void(Result)> next) const;
  void saveProxy(const TransparentProxyConfiguration& proxy,
                 std::function<void(ProxySaved)> completion) const;
  void startProxy(const std::string& identifier, std::function<void(ProxySaved)> completion) const;
  void removeNext(Proxies remaining, std::function<void()> completion) const;

  NetworkPreferences* preferences_;
  MainQueue* mainQueue_;
  Log* log_;
  Records records_;
};

}  // namespace ostrel
