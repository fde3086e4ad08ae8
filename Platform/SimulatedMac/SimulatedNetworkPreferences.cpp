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

/// The parsed file, a discarded value when it is damaged, the given one when it is missing.
std::expected<Json, PlatformError> readState(const Files& files, const char* path, Json missing) {
  const auto bytes = files.read(path);
  if (bytes) return Json::parse(*bytes, nullptr, false);
  if (bytes.error().domain == posixErrorDomain && bytes.error().code == ENOENT) return missing;
  return std::unexpected(bytes.error());
}

std::optional<bool> boolMember(const Json& json, const char* name) {
  if (!json.is_object()) return std::nullopt;
  const auto member = json.find(name);
  if (member == json.end() || !member->is_boolean()) return std::nullopt;
  return member->get<bool>();
}

NetworkPreferences::TransparentProxies readProxies(const Files& files) {
  const auto state = readState(files, simulatedstate::transparentProxies, Json::array());
  if (!state) return std::unexpected(proxiesUnreadable(state.error().description));
  if (!state->is_array()) return std::unexpected(proxiesUnreadable("The configurations are damaged."));
  std::vector<TransparentProxyConfiguration> configurations;
  for (const auto& json : *state) {
    const auto enabled = boolMember(json, "enabled");
    const auto connected = boolMember(json, "connected");
    if (!enabled || !connected) return std::unexpected(proxiesUnreadable("A configuration is damaged."));
    configurations.push_back({*enabled, *connected});
  }
  return configurations;
}

NetworkPreferences::ContentFilter readFilter(const Files& files) {
  const auto state =
      readState(files, simulatedstate::contentFilter, {{"provider", false}, {"enabled", false}});
  if (!state) return std::unexpected(filterUnreadable(state.error().description));
  const auto provider = boolMember(*state, "provider");
  const auto enabled = boolMember(*state, "enabled");
  if (!provider || !enabled) return std::unexpected(filterUnreadable("The configuration is damaged."));
  return ContentFilterConfiguration{*provider, *enabled};
}

}  // namespace

SimulatedNetworkPreferences::SimulatedNetworkPreferences(const Files& files) : files_(files) {}

void SimulatedNetworkPreferences::loadTransparentProxies(std::function<void(TransparentProxies)> completion) {
  completion(readProxies(files_));
}

void SimulatedNetworkPreferences::loadContentFilter(std::function<void(ContentFilter)> completion) {
  completion(readFilter(files_));
}

}  // namespace ostrel
