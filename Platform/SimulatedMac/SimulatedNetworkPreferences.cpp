#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "Platform/Posix/FileLock.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/NetworkPreferencesFile.hpp"

namespace ostrel {

namespace {

bool isMissing(const PlatformError& error) {
  return error.domain == posixErrorDomain && error.code == ENOENT;
}

/// An identifier that is unique in the list.
std::string freshIdentifier(const std::vector<TransparentProxyConfiguration>& configurations) {
  for (auto number = configurations.size();; ++number) {
    auto identifier = "proxy " + std::to_string(number);
    if (std::ranges::count(configurations, identifier, &TransparentProxyConfiguration::identifier) == 0) {
      return identifier;
    }
  }
}

/// Codes of NEVPNError in <NetworkExtension/NEVPNManager.h>.
enum class ErrorCode { disabled = 2, stale = 4 };

std::unexpected<PlatformError> refusal(ErrorCode code) {
  const char* reason =
      code == ErrorCode::stale ? "The configuration is stale." : "The configuration is disabled.";
  return std::unexpected(PlatformError{vpnErrorDomain, static_cast<int>(code), reason});
}

using Configurations = std::vector<TransparentProxyConfiguration>;

Configurations::iterator find(Configurations& all, const std::string& identifier) {
  return std::ranges::find(all, identifier, &TransparentProxyConfiguration::identifier);
}

/// Inserts or replaces the configuration and sets its identifier and connection state.
NetworkPreferences::Done keep(TransparentProxyConfiguration& configuration, Configurations& all) {
  if (configuration.identifier.empty()) {
    // Another process has changed it since: the loaded configuration is stale.
    const auto& provider = configuration.providerBundleIdentifier;
    const bool isTaken =
        !provider.empty() &&
        std::ranges::count(all, provider, &TransparentProxyConfiguration::providerBundleIdentifier) > 0;
    if (isTaken) return refusal(ErrorCode::stale);
    configuration.identifier = freshIdentifier(all);
    configuration.connected = false;
    all.push_back(configuration);
    return {};
  }
  const auto place = find(all, configuration.identifier);
  if (place == all.end()) return refusal(ErrorCode::stale);
  configuration.connected = place->connected && configuration.enabled;
  *place = configuration;
  return {};
}

NetworkPreferences::Done connect(const std::string& identifier, Configurations& all) {
  const auto place = find(all, identifier);
  if (place == all.end()) return refusal(ErrorCode::stale);
  if (!place->enabled) return refusal(ErrorCode::disabled);
  place->connected = true;
  return {};
}

NetworkPreferences::Done erase(const std::string& identifier, Configurations& all) {
  const auto place = find(all, identifier);
  if (place == all.end()) return refusal(ErrorCode::stale);
  all.erase(place);
  return {};
}

}  // namespace

template <class Value>
Value SimulatedNetworkPreferences::Reading<Value>::of(const std::string& bytes) {
  const std::lock_guard lock(mutex_);
  if (!latest_ || latest_->first != bytes) latest_.emplace(bytes, read_(bytes));
  return latest_->second;
}

SimulatedNetworkPreferences::SimulatedNetworkPreferences(Files& files, const std::string& lockPath)
    : files_(files),
      lockPath_(lockPath),
      overrides_(files, lockPath),
      proxies_([](const std::string& bytes) { return transparentProxiesOfFile(bytes); }),
      filter_([](const std::string& bytes) { return contentFilterOfFile(bytes); }) {}

void SimulatedNetworkPreferences::loadTransparentProxies(std::function<void(TransparentProxies)> completion) {
  if (auto ordered = overrides_.takeFailure(FaultyCall::loadProxies)) {
    return completion(std::unexpected(std::move(*ordered)));
  }
  completion(readProxies());
}

void SimulatedNetworkPreferences::saveTransparentProxy(
    const TransparentProxyConfiguration& configuration,
    std::function<void(std::expected<TransparentProxyConfiguration, PlatformError>)> completion) {
  auto saved = configuration;
  const auto done =
      changeProxies(FaultyCall::saveProxy, [&saved](Configurations& all) { return keep(saved, all); });
  if (!done) return completion(std::unexpected(done.error()));
  completion(std::move(saved));
}

void SimulatedNetworkPreferences::startTransparentProxy(const std::string& identifier,
                                                        std::function<void(Done)> completion) {
  completion(changeProxies(FaultyCall::startProxy,
                           [&identifier](Configurations& all) { return connect(identifier, all); }));
}

void SimulatedNetworkPreferences::removeTransparentProxy(const std::string& identifier,
                                                         std::function<void(Done)> completion) {
  completion(changeProxies(FaultyCall::removeProxy,
                           [&identifier](Configurations& all) { return erase(identifier, all); }));
}

void SimulatedNetworkPreferences::loadContentFilter(std::function<void(ContentFilter)> completion) {
  if (auto ordered = overrides_.takeFailure(FaultyCall::loadFilter)) {
    return completion(std::unexpected(std::move(*ordered)));
  }
  const auto bytes = files_.read(simulatedstate::contentFilter);
  if (bytes) return completion(filter_.of(*bytes));
  if (isMissing(bytes.error())) return completion(ContentFilter());
  completion(std::unexpected(unusableFilter(bytes.error().description)));
}

void SimulatedNetworkPreferences::saveContentFilter(const ContentFilterConfiguration& configuration,
                                                    std::function<void(Done)> completion) {
  if (auto ordered = overrides_.takeFailure(FaultyCall::saveFilter)) {
    return completion(std::unexpected(std::move(*ordered)));
  }
  const auto written = writeState(simulatedstate::contentFilter, fileOfContentFilter(configuration));
  if (!written) return completion(std::unexpected(unusableFilter(written.error().description)));
  completion({});
}

NetworkPreferences::TransparentProxies SimulatedNetworkPreferences::readProxies() {
  const auto bytes = files_.read(simulatedstate::transparentProxies);
  if (bytes) return proxies_.of(*bytes);
  if (isMissing(bytes.error())) return TransparentProxies();
  return std::unexpected(unusableProxies(bytes.error().description));
}

NetworkPreferences::Done SimulatedNetworkPreferences::changeProxies(FaultyCall call, const Change& change) {
  if (auto ordered = overrides_.takeFailure(call)) return std::unexpected(std::move(*ordered));
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(unusableProxies(lock.error().description));
  auto configurations = readProxies();
  if (!configurations) return std::unexpected(configurations.error());
  if (auto done = change(*configurations); !done) return done;
  const auto written =
      writeState(simulatedstate::transparentProxies, fileOfTransparentProxies(*configurations));
  if (!written) return std::unexpected(unusableProxies(written.error().description));
  return {};
}

std::expected<void, PlatformError> SimulatedNetworkPreferences::writeState(const std::string& path,
                                                                           const std::string& bytes) {
  if (auto made = files_.makeFolders(path.substr(0, path.rfind('/'))); !made) return made;
  return files_.writeAtomically(path, bytes);
}

}  // namespace ostrel
