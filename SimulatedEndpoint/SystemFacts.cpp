#include "SimulatedEndpoint/SystemFacts.hpp"

namespace ostrel::simulated {

namespace {

bool isSet(const Json& object, const char* name) {
  return object.is_object() && object.contains(name) && object[name] == true;
}

}  // namespace

SystemFacts SystemFacts::of(const Json& extension, const Json& proxies, const Json& filter) {
  SystemFacts facts;
  if (extension.is_object() && extension.contains("installed") && extension.contains("bundled")) {
    facts.isActive = extension["installed"].is_string() && isSet(extension, "enabled");
    facts.isCurrent = facts.isActive && extension["installed"] == extension["bundled"];
    facts.awaitsApproval = extension.contains("awaiting") && extension["awaiting"] == "activation";
  }
  if (proxies.is_array() && !proxies.empty()) {
    facts.isProxyEnabled = isSet(proxies.front(), "enabled");
    facts.isProxyConnected = isSet(proxies.front(), "connected");
  }
  facts.hasFilter = isSet(filter, "provider");
  facts.isFilterEnabled = facts.hasFilter && isSet(filter, "enabled");
  return facts;
}

}  // namespace ostrel::simulated
