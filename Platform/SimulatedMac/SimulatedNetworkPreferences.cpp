#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/NetworkPreferencesFile.hpp"

namespace ostrel {

namespace {

bool isMissing(const PlatformError& error) {
  return error.domain == posixErrorDomain && error.code == ENOENT;
}

/// A name that no other configuration of the list has.
std::string freshIdentifier(const std::vector<TransparentProxyConfiguration>& configurations) {
  for (auto number = configurations.size();; ++number) {
    auto identifier = "proxy " + std::to_string(number);
    if (std::ranges::count(configurations, identifier, &TransparentProxyConfiguration::identifier) == 0) {
      return identifier;
    }
  }
}

PlatformError noSuchConfiguration() {
  // NEVPNErrorConfigurationStale of <NetworkExtension/NEVPNManager.h>.
  return {vpnErrorDomain, 4, "The configuration is stale."};
}

}  // namespace

template <class Value>
Value SimulatedNetworkPreferences::Reading<Value>::of(const std::string& bytes) {
  const std::lock_guard lock(mutex_);
  if (!latest_ || latest_->first != bytes) latest_.emplace(bytes, read_(bytes));
  return latest_->second;
}

SimulatedNetworkPreferences::SimulatedNetworkPreferences(Files& files)
    : files_(files),
      proxies_([](const std::string& bytes) { return transparentProxiesOfFile(bytes); }),
      filter_([](const std::string& bytes) { return contentFilterOfFile(bytes); }) {}

void SimulatedNetworkPreferences::loadTransparentProxies(std::function<void(TransparentProxies)> completion) {
  completion(readProxies());
}

void SimulatedNetworkPreferences::saveTransparentProxy(
    const TransparentProxyConfiguration& configuration,
    std::function<void(std::expected<TransparentProxyConfiguration, PlatformError>)> completion) {
  auto saved = configuration;
  const auto done = changeProxies([&saved](std::vector<TransparentProxyConfiguration>& all) {
    if (saved.identifier.empty()) {
      saved.identifier = freshIdentifier(all);
      saved.connected = false;
      all.push_back(saved);
      return true;
    }
    const auto place = std::ranges::find(all, saved.identifier, &TransparentProxyConfiguration::identifier);
    if (place == all.end()) return false;
    saved.connected = place->connected;
    *place = saved;
    return true;
  });
  if (!done) return completion(std::unexpected(done.error()));
  completion(std::move(saved));
}

void SimulatedNetworkPreferences::startTransparentProxy(const std::string& identifier,
                                                        std::function<void(Done)> completion) {
  completion(changeProxies([&identifier](std::vector<TransparentProxyConfiguration>& all) {
    const auto place = std::ranges::find(all, identifier, &TransparentProxyConfiguration::identifier);
    if (place == all.end()) return false;
    place->connected = true;
    return true;
  }));
}

void SimulatedNetworkPreferences::removeTransparentProxy(const std::string& identifier,
                                                         std::function<void(Done)> completion) {
  completion(changeProxies([&identifier](std::vector<TransparentProxyConfiguration>& all) {
    return std::erase_if(all, [&](const auto& each) { return each.identifier == identifier; }) > 0;
  }));
}

void SimulatedNetworkPreferences::loadContentFilter(std::function<void(ContentFilter)> completion) {
  const auto bytes = files_.read(simulatedstate::contentFilter);
  if (bytes) return completion(filter_.of(*bytes));
  if (isMissing(bytes.error())) return completion(ContentFilter());
  completion(std::unexpected(unusableFilter(bytes.error().description)));
}

void SimulatedNetworkPreferences::saveContentFilter(const ContentFilterConfiguration& configuration,
                                                    std::function<void(Done)> completion) {
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

NetworkPreferences::Done SimulatedNetworkPreferences::changeProxies(
    const std::function<bool(std::vector<TransparentProxyConfiguration>&)>& change) {
  auto configurations = readProxies();
  if (!configurations) return std::unexpected(configurations.error());
  if (!change(*configurations)) return std::unexpected(noSuchConfiguration());
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
