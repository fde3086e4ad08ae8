#include "OstrelAgent/Extension/NetworkConfigurations.hpp"

#include <utility>

namespace ostrel {

namespace {

using Failure = std::unexpected<NetworkConfigurations::ProxyFailure>;

TransparentProxyConfiguration pointedAtExtension(TransparentProxyConfiguration proxy,
                                                 const CaptureConfig& captureConfig) {
  proxy.enabled = true;
  proxy.providerBundleIdentifier = systemExtensionIdentifier;
  proxy.serverAddress = "Ostrel Guard";
  proxy.providerConfiguration = captureConfig.json();
  proxy.localizedDescription = "Ostrel Agent";
  proxy.onDemandRules = {{OnDemandRule::Action::connect, OnDemandRule::InterfaceType::any}};
  proxy.onDemandEnabled = true;
  return proxy;
}

ContentFilterConfiguration pointedAtExtension(ContentFilterConfiguration filter) {
  filter.hasProvider = true;
  filter.enabled = true;
  filter.filterSockets = true;
  filter.filterPackets = false;
  filter.dataProviderBundleIdentifier = systemExtensionIdentifier;
  filter.localizedDescription = "Ostrel Agent — Egress Lock";
  return filter;
}

}  // namespace

NetworkConfigurations::NetworkConfigurations(NetworkPreferences& preferences, MainQueue& mainQueue, Log& log,
                                             Records records)
    : preferences_(&preferences), mainQueue_(&mainQueue), log_(&log), records_(std::move(records)) {}

/// Wraps a completion so that it runs on the main thread; the wrapper may be called on any thread.
template <class Result>
std::function<void(Result)> NetworkConfigurations::onMain(std::function<void(Result)> next) const {
  return [queue = mainQueue_, next = std::move(next)](Result result) {
    queue->post([next, result = std::move(result)] { next(result); });
  };
}

std::expected<CaptureConfig, std::string> NetworkConfigurations::staticCaptureConfig(const Bundle& bundle) {
  const auto refusal = [](const std::string& reason) {
    return std::unexpected("captured-hosts.json of the application cannot be used (" + reason +
                           ") — install the application again");
  };
  const auto bytes = bundle.resource("captured-hosts.json");
  if (!bytes) return refusal(bytes.error().description);
  auto config = CaptureConfig::ofHostList(*bytes);
  if (!config) return refusal(config.error());
  return config;
}

void NetworkConfigurations::saveStaticCaptureConfig(const Bundle& bundle,
                                                    std::function<void(CaptureSaved)> completion) const {
  const auto config = staticCaptureConfig(bundle);
  if (!config) return completion(std::unexpected(config.error()));
  saveTransparentProxyConfiguration(*config, [completion = std::move(completion)](const ProxySaved& saved) {
    completion(saved ? CaptureSaved() : std::unexpected(saved.error().description()));
  });
}

void NetworkConfigurations::saveTransparentProxyConfiguration(
    const CaptureConfig& captureConfig, std::function<void(ProxySaved)> completion) const {
  auto saved = [records = records_, captureConfig, completion](const ProxySaved& result) {
    if (result) records.recordAppliedCapture(captureConfig);
    completion(result);
  };
  preferences_->loadTransparentProxies(onMain<NetworkPreferences::TransparentProxies>(
      [self = *this, captureConfig, saved = std::move(saved)](const auto& loaded) {
        if (!loaded) return saved(Failure({"load proxy prefs", loaded.error()}));
        const auto first = loaded->empty() ? TransparentProxyConfiguration() : loaded->front();
        self.saveProxy(pointedAtExtension(first, captureConfig), saved);
      }));
}

void NetworkConfigurations::saveProxy(const TransparentProxyConfiguration& proxy,
                                      std::function<void(ProxySaved)> completion) const {
  preferences_->saveTransparentProxy(
      proxy, onMain<std::expected<TransparentProxyConfiguration, PlatformError>>(
                 [self = *this, completion = std::move(completion)](const auto& saved) {
                   if (!saved) return completion(Failure({"save proxy prefs", saved.error()}));
                   self.startProxy(saved->identifier, completion);
                 }));
}

void NetworkConfigurations::startProxy(const std::string& identifier,
                                       std::function<void(ProxySaved)> completion) const {
  preferences_->startTransparentProxy(
      identifier, onMain<NetworkPreferences::Done>([completion = std::move(completion)](const auto& started) {
        if (!started) return completion(Failure({"start proxy", started.error()}));
        completion({});
      }));
}

void NetworkConfigurations::removeTransparentProxies(std::function<void()> completion) const {
  preferences_->loadTransparentProxies(onMain<NetworkPreferences::TransparentProxies>(
      [self = *this, completion = std::move(completion)](const auto& loaded) {
        if (loaded) return self.removeNext(*loaded, completion);
        self.log_->line("ostrel: could not load the transparent proxies: " + loaded.error().description);
        completion();
      }));
}

void NetworkConfigurations::removeNext(Proxies remaining, std::function<void()> completion) const {
  if (remaining.empty()) return completion();
  const auto identifier = remaining.back().identifier;
  remaining.pop_back();
  preferences_->removeTransparentProxy(
      identifier, onMain<NetworkPreferences::Done>([self = *this, remaining = std::move(remaining),
                                                    completion = std::move(completion)](const auto& removed) {
        if (!removed) {
          self.log_->line("ostrel: could not remove a transparent proxy: " + removed.error().description);
        }
        self.removeNext(remaining, completion);
      }));
}

void NetworkConfigurations::saveEgressLockConfiguration(std::function<void(LockSaved)> completion) const {
  preferences_->loadContentFilter(onMain<NetworkPreferences::ContentFilter>(
      [self = *this, completion = std::move(completion)](const auto& loaded) {
        if (!loaded) return completion(std::unexpected(loaded.error()));
        self.preferences_->saveContentFilter(pointedAtExtension(*loaded), self.onMain<LockSaved>(completion));
      }));
}

}  // namespace ostrel
