#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"

#include <cerrno>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel {

namespace {

using Json = nlohmann::json;

// NEVPNErrorConfigurationReadWriteFailed of <NetworkExtension/NEVPNManager.h>.
PlatformError proxiesUnreadable(const std::string& reason) { return {"NEVPNErrorDomain", 5, reason}; }

// NEFilterManagerErrorConfigurationStale is 3 in <NetworkExtension/NEFilterManager.h>.
PlatformError filterUnreadable(const std::string& reason) { return {"NEFilterErrorDomain", 3, reason}; }

std::optional<bool> boolMember(const Json& json, const char* name) {
  if (!json.is_object()) return std::nullopt;
  const auto member = json.find(name);
  if (member == json.end() || !member->is_boolean()) return std::nullopt;
  return member->get<bool>();
}

using TransparentProxies = NetworkPreferences::TransparentProxies;
using ContentFilter = NetworkPreferences::ContentFilter;

TransparentProxies proxiesOf(const std::string& bytes) {
  const auto state = Json::parse(bytes, nullptr, false);
  if (!state.is_array()) return std::unexpected(proxiesUnreadable("The configurations are damaged."));
  std::vector<TransparentProxyConfiguration> configurations;
  for (const auto& json : state) {
    const auto enabled = boolMember(json, "enabled");
    const auto connected = boolMember(json, "connected");
    if (!enabled || !connected) return std::unexpected(proxiesUnreadable("A configuration is damaged."));
    configurations.push_back({*enabled, *connected});
  }
  return configurations;
}

ContentFilter filterOf(const std::string& bytes) {
  const auto state = Json::parse(bytes, nullptr, false);
  const auto provider = boolMember(state, "provider");
  const auto enabled = boolMember(state, "enabled");
  if (!provider || !enabled) return std::unexpected(filterUnreadable("The configuration is damaged."));
  return ContentFilterConfiguration{*provider, *enabled};
}

bool isMissing(const PlatformError& error) {
  return error.domain == posixErrorDomain && error.code == ENOENT;
}

}  // namespace

template <class Value>
Value SimulatedNetworkPreferences::Reading<Value>::of(const std::string& bytes) {
  const std::lock_guard lock(mutex_);
  if (!latest_ || latest_->first != bytes) latest_.emplace(bytes, read_(bytes));
  return latest_->second;
}

SimulatedNetworkPreferences::SimulatedNetworkPreferences(const Files& files)
    : files_(files), proxies_(proxiesOf), filter_(filterOf) {}

void SimulatedNetworkPreferences::loadTransparentProxies(std::function<void(TransparentProxies)> completion) {
  const auto bytes = files_.read(simulatedstate::transparentProxies);
  if (bytes) return completion(proxies_.of(*bytes));
  if (isMissing(bytes.error())) return completion(TransparentProxies());
  completion(std::unexpected(proxiesUnreadable(bytes.error().description)));
}

void SimulatedNetworkPreferences::loadContentFilter(std::function<void(ContentFilter)> completion) {
  const auto bytes = files_.read(simulatedstate::contentFilter);
  if (bytes) return completion(filter_.of(*bytes));
  if (isMissing(bytes.error())) return completion(ContentFilter());
  completion(std::unexpected(filterUnreadable(bytes.error().description)));
}

}  // namespace ostrel
