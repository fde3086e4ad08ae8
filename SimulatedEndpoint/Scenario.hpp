#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// One state of the simulated Mac: what the helper reports, how it behaves, what the system's preferences
/// hold.
class Scenario {
 public:
  /// The scenario of a document, defaults filled in, or a sentence on what is wrong with it.
  [[nodiscard]] static std::expected<Scenario, std::string> fromJson(const Json& document);
  [[nodiscard]] static std::expected<Scenario, std::string> fromText(std::string_view text);

  /// What is simulated until a scenario is chosen.
  [[nodiscard]] static std::expected<Scenario, std::string> initial();

  /// This scenario after the endpoint was removed from the Mac; the helper behaves as before.
  [[nodiscard]] std::expected<Scenario, std::string> uninstalled() const;

  /// This scenario with another report, an object.
  Scenario withReport(Json report) const;

  /// This scenario with the value at a dotted path ("report.health.verdict") replaced.
  [[nodiscard]] std::expected<Scenario, std::string> with(std::string_view path, Json value) const;

  const Json& document() const { return document_; }
  std::string name() const { return document_.at("name"); }
  std::string description() const { return document_.at("description"); }
  const Json& report() const { return document_.at("report"); }
  const Json& network() const { return document_.at("network"); }
  const Json& extension() const { return document_.at("extension"); }
  /// The other software of the Mac; null when the scenario leaves it as it is.
  const Json& mac() const { return document_.at("mac"); }
  const Json& helper() const { return document_.at("helper"); }

 private:
  explicit Scenario(Json document) : document_(std::move(document)) {}

  Json document_;
};

/// Scenario files that the helper needs wherever its bundle is, as text.
extern const std::string_view compiledInitialScenario;
extern const std::string_view compiledUninstalledScenario;

}  // namespace ostrel::simulated
