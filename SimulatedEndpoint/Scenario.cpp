#include "SimulatedEndpoint/Scenario.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "Platform/SimulatedMac/SystemExtensionFile.hpp"
#include "SimulatedEndpoint/DottedPath.hpp"
#include "SimulatedEndpoint/HelperBehaviour.hpp"
#include "SimulatedEndpoint/ScenarioMac.hpp"
#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {

namespace {

/// Every key of a scenario, in the order in which it is shown, with its default.
Json emptyScenario() {
  return {{"name", ""},
          {"description", ""},
          {"report", nullptr},
          {"helper", Json::object()},
          {"network",
           {{"transparent_proxies", Json::array()},
            {"content_filter", {{"provider", false}, {"enabled", false}}}}},
          {"extension",
           {{"installed", nullptr}, {"enabled", false}, {"bundled", "4.12.0"}, {"awaiting", nullptr}}},
          {"mdm_enrolled", false},
          {"mac", nullptr}};
}

/// A sentence when the object is none or holds a key that the model does not.
std::optional<std::string> keyFault(std::string_view name, const Json& object, const Json& model) {
  if (!object.is_object()) return inQuotes(name) + " must be an object";
  for (const auto& [key, value] : object.items()) {
    if (!model.contains(key))
      return inQuotes(name) + " has no key " + inQuotes(key) + "; it knows " + keyList(model);
  }
  return std::nullopt;
}

/// A sentence unless the object holds a flag for each key of the model, and nothing else.
std::optional<std::string> flagsFault(std::string_view name, const Json& object, const Json& model) {
  if (auto fault = keyFault(name, object, model)) return fault;
  for (const auto& [key, value] : model.items()) {
    if (!object.contains(key) || !object[key].is_boolean()) {
      return inQuotes(std::string(name) + "." + key) + " must be true or false";
    }
  }
  return std::nullopt;
}

std::optional<std::string> networkFault(const Json& network) {
  static const Json proxy = {{"enabled", true}, {"connected", true}};
  const auto model = emptyScenario()["network"];
  if (auto fault = keyFault("network", network, model)) return fault;
  const auto& proxies = network["transparent_proxies"];
  if (!proxies.is_array()) return "\"network.transparent_proxies\" must be a list";
  for (std::size_t index = 0; index < proxies.size(); ++index) {
    const auto name = "network.transparent_proxies." + std::to_string(index);
    if (auto fault = flagsFault(name, proxies[index], proxy)) return fault;
  }
  return flagsFault("network.content_filter", network["content_filter"], model["content_filter"]);
}

std::optional<std::string> extensionFault(const Json& extension) {
  if (auto fault = keyFault("extension", extension, emptyScenario()["extension"])) return fault;
  if (systemExtensionOfFile(extension.dump())) return std::nullopt;
  return "\"extension\" takes \"installed\", a version or null; \"enabled\", true or false; \"bundled\", a "
         "version; \"awaiting\", null, \"activation\" or \"deactivation\"";
}

std::optional<std::string> scenarioFault(const Json& document) {
  if (!isShallow(document)) return "the scenario is nested too deeply";
  for (const auto* key : {"name", "description"}) {
    if (!document[key].is_string()) return inQuotes(key) + " must be a text";
  }
  if (!document["report"].is_object()) return "\"report\" must be an object";
  if (!document["mdm_enrolled"].is_boolean()) return "\"mdm_enrolled\" must be true or false";
  if (auto time = firstMisspeltTime(document["report"])) {
    return inQuotes(*time) + " is no offset from now, as \"@+10m\" or \"@-1h30m\" is";
  }
  if (auto fault = helperFault(document["helper"])) return fault;
  if (auto fault = extensionFault(document["extension"])) return fault;
  if (const auto& mac = document["mac"]; !mac.is_null()) {
    if (auto fault = keyFault("mac", mac, macWithoutSoftware())) return fault;
    if (auto fault = macFault(mac)) return fault;
  }
  return networkFault(document["network"]);
}

}  // namespace

std::expected<Scenario, std::string> Scenario::fromJson(const Json& document) {
  auto whole = emptyScenario();
  if (auto fault = keyFault("scenario", document, whole)) return std::unexpected(*fault);
  if (document.contains("mac") && document["mac"].is_object()) whole["mac"] = macWithoutSoftware();
  for (const auto& [key, value] : document.items()) {
    if ((key == "network" || key == "extension" || key == "mac") && value.is_object()) {
      whole[key].update(value);
    } else {
      whole[key] = value;
    }
  }
  if (auto fault = scenarioFault(whole)) return std::unexpected(*fault);
  return Scenario(std::move(whole));
}

std::expected<Scenario, std::string> Scenario::fromText(std::string_view text) {
  const auto document = parseJson(text);
  if (!document) return std::unexpected(document.error());
  return fromJson(*document);
}

std::expected<Scenario, std::string> Scenario::initial() { return fromText(compiledInitialScenario); }

std::expected<Scenario, std::string> Scenario::uninstalled() const {
  auto after = fromText(compiledUninstalledScenario);
  if (after) after->document_["helper"] = helper();
  return after;
}

Scenario Scenario::withReport(Json report) const {
  auto after = *this;
  after.document_["report"] = std::move(report);
  return after;
}

std::expected<Scenario, std::string> Scenario::with(std::string_view path, Json value) const {
  auto document = document_;
  if (auto fault = setAtPath(document, path, std::move(value)); !fault) return std::unexpected(fault.error());
  return fromJson(document);
}

}  // namespace ostrel::simulated
