#include "Platform/SimulatedMac/NetworkPreferencesFile.hpp"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <utility>

namespace ostrel {

namespace {

using Json = nlohmann::json;
using Rule = OnDemandRule;

template <class Value>
struct Word {
  std::string_view word;
  Value value;
};

constexpr Word<Rule::Action> actions[] = {
    {"connect", Rule::Action::connect},
    {"disconnect", Rule::Action::disconnect},
};

constexpr Word<Rule::InterfaceType> interfaceTypes[] = {
    {"any", Rule::InterfaceType::any},
    {"ethernet", Rule::InterfaceType::ethernet},
    {"wifi", Rule::InterfaceType::wiFi},
    {"cellular", Rule::InterfaceType::cellular},
};

template <class Value>
std::string_view wordOf(std::span<const Word<Value>> words, Value value) {
  return std::ranges::find(words, value, &Word<Value>::value)->word;
}

template <class Value>
std::optional<Value> valueOf(std::span<const Word<Value>> words, const std::string& word) {
  const auto row = std::ranges::find(words, word, &Word<Value>::word);
  return row == words.end() ? std::nullopt : std::optional(row->value);
}

std::optional<bool> flag(const Json& json, const char* name) {
  if (!json.is_object()) return std::nullopt;
  const auto member = json.find(name);
  if (member == json.end() || !member->is_boolean()) return std::nullopt;
  return member->get<bool>();
}

std::string text(const Json& json, const char* name) {
  const auto member = json.find(name);
  return member != json.end() && member->is_string() ? member->get<std::string>() : std::string();
}

std::vector<OnDemandRule> rulesOf(const Json& json) {
  std::vector<OnDemandRule> rules;
  const auto list = json.find("on_demand_rules");
  if (list == json.end() || !list->is_array()) return rules;
  for (const auto& each : *list) {
    if (!each.is_object()) continue;
    const auto action = valueOf<Rule::Action>(actions, text(each, "action"));
    const auto interfaceType = valueOf<Rule::InterfaceType>(interfaceTypes, text(each, "interface_type"));
    if (action && interfaceType) rules.push_back({*action, *interfaceType});
  }
  return rules;
}

Json jsonOf(const std::vector<OnDemandRule>& rules) {
  auto list = Json::array();
  for (const auto& rule : rules) {
    list.push_back({{"action", wordOf<Rule::Action>(actions, rule.action)},
                    {"interface_type", wordOf<Rule::InterfaceType>(interfaceTypes, rule.interfaceType)}});
  }
  return list;
}

TransparentProxyConfiguration proxyOf(const Json& json, bool enabled, bool connected, std::size_t place) {
  TransparentProxyConfiguration configuration{.enabled = enabled, .connected = connected};
  configuration.identifier = text(json, "identifier");
  if (configuration.identifier.empty()) configuration.identifier = "place " + std::to_string(place);
  configuration.providerBundleIdentifier = text(json, "provider_bundle_identifier");
  configuration.serverAddress = text(json, "server_address");
  if (json.contains("provider_configuration")) {
    configuration.providerConfiguration = json["provider_configuration"].dump();
  }
  configuration.localizedDescription = text(json, "localized_description");
  configuration.onDemandRules = rulesOf(json);
  configuration.onDemandEnabled = flag(json, "on_demand_enabled").value_or(false);
  return configuration;
}

Json jsonOf(const TransparentProxyConfiguration& configuration) {
  Json json = {{"identifier", configuration.identifier},
               {"enabled", configuration.enabled},
               {"connected", configuration.connected},
               {"provider_bundle_identifier", configuration.providerBundleIdentifier},
               {"server_address", configuration.serverAddress},
               {"localized_description", configuration.localizedDescription},
               {"on_demand_rules", jsonOf(configuration.onDemandRules)},
               {"on_demand_enabled", configuration.onDemandEnabled}};
  auto provider = Json::parse(configuration.providerConfiguration, nullptr, false);
  if (provider.is_object()) json["provider_configuration"] = std::move(provider);
  return json;
}

std::string printed(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

// NEVPNErrorConfigurationReadWriteFailed of <NetworkExtension/NEVPNManager.h>.
PlatformError unusableProxies(std::string reason) { return {vpnErrorDomain, 5, std::move(reason)}; }

// NEFilterManagerErrorConfigurationStale is 3 in <NetworkExtension/NEFilterManager.h>.
PlatformError unusableFilter(std::string reason) { return {"NEFilterErrorDomain", 3, std::move(reason)}; }

NetworkPreferences::TransparentProxies transparentProxiesOfFile(std::string_view bytes) {
  const auto state = Json::parse(bytes, nullptr, false);
  if (!state.is_array()) return std::unexpected(unusableProxies("The configurations are damaged."));
  std::vector<TransparentProxyConfiguration> configurations;
  for (const auto& json : state) {
    const auto enabled = flag(json, "enabled");
    const auto connected = flag(json, "connected");
    if (!enabled || !connected) return std::unexpected(unusableProxies("A configuration is damaged."));
    configurations.push_back(proxyOf(json, *enabled, *connected, configurations.size()));
  }
  return configurations;
}

std::string fileOfTransparentProxies(const std::vector<TransparentProxyConfiguration>& configurations) {
  auto list = Json::array();
  for (const auto& configuration : configurations) list.push_back(jsonOf(configuration));
  return printed(list);
}

NetworkPreferences::ContentFilter contentFilterOfFile(std::string_view bytes) {
  const auto state = Json::parse(bytes, nullptr, false);
  const auto provider = flag(state, "provider");
  const auto enabled = flag(state, "enabled");
  if (!provider || !enabled) return std::unexpected(unusableFilter("The configuration is damaged."));
  return ContentFilterConfiguration{
      .hasProvider = *provider,
      .enabled = *enabled,
      .filterSockets = flag(state, "filter_sockets").value_or(false),
      .filterPackets = flag(state, "filter_packets").value_or(false),
      .dataProviderBundleIdentifier = text(state, "data_provider_bundle_identifier"),
      .localizedDescription = text(state, "localized_description"),
  };
}

std::string fileOfContentFilter(const ContentFilterConfiguration& configuration) {
  return printed({{"provider", configuration.hasProvider},
                  {"enabled", configuration.enabled},
                  {"filter_sockets", configuration.filterSockets},
                  {"filter_packets", configuration.filterPackets},
                  {"data_provider_bundle_identifier", configuration.dataProviderBundleIdentifier},
                  {"localized_description", configuration.localizedDescription}});
}

}  // namespace ostrel
