#include "OstrelAgent/Panel/RuntimeTrustRow.hpp"

#include <algorithm>
#include <iterator>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Health = Snapshot::ComponentHealth;
using OptionalText = std::optional<std::string>;

std::vector<std::string> nonEmpty(const std::vector<std::string>& params) {
  std::vector<std::string> kept;
  std::ranges::copy_if(params, std::back_inserter(kept), [](const auto& param) { return !param.empty(); });
  return kept;
}

/// The parameter that names a file: the first that looks like a path, else the last that is not empty.
OptionalText file(const Health& health) {
  const auto params = nonEmpty(health.params);
  const auto path = std::ranges::find_if(params, [](const auto& param) { return param.contains('/'); });
  if (path != params.end()) return *path;
  return params.empty() ? OptionalText() : params.back();
}

OptionalText first(const Health& health) {
  const auto params = nonEmpty(health.params);
  return params.empty() ? OptionalText() : params.front();
}

OptionalText checkFile(const Health& health) { return file(health).transform(Copy::runtimeTrustCheckFile); }

OptionalText readingFile(const Health& health) {
  return file(health).transform(Copy::runtimeTrustReadingFile);
}

OptionalText shellDidNotAnswer(const Health& health) {
  const auto shell = first(health);
  if (!shell) return std::nullopt;
  return Copy::runtimeTrustShellDidNotAnswer.with(lastPathComponent(*shell));
}

OptionalText programs(const Message& message, const Health& health) {
  const auto names = nonEmpty(health.params);
  if (names.empty()) return std::nullopt;
  return message.with(Copy::listJoined(names));
}

OptionalText rejectedBy(const Health& health) { return programs(Copy::runtimeTrustRejectedBy, health); }

OptionalText containerRejectedBy(const Health& health) {
  return programs(Copy::runtimeTrustContainerRejectedBy, health);
}

OptionalText staleLauncher(const Health& health) { return Copy::runtimeTrustStaleLauncher(health.params); }

OptionalText shellSkippedSeed(const Health& health) {
  return Copy::runtimeTrustShellSkippedSeed(health.params);
}

OptionalText bundleMissing(const Health&) { return std::string(Copy::runtimeTrustBundleMissing.text()); }
OptionalText bundleStale(const Health&) { return std::string(Copy::runtimeTrustBundleStale.text()); }
OptionalText bundleUnprotected(const Health&) {
  return std::string(Copy::runtimeTrustBundleUnprotected.text());
}

/// A code with its text, nullopt when the code's parameter is missing, and the text for that case.
struct Rule {
  std::string_view code;
  OptionalText (*text)(const Health&);
  const Message& withoutParameter = Copy::runtimeTrustBroken;
};

constexpr Rule rules[] = {
    {"TRUST_KNOB_OVERRIDE_SUSPECTED", checkFile},
    {"TRUST_RC_FILE_UNSCANNED", readingFile},
    {"TRUST_ENV_SHELL_UNRESPONSIVE", shellDidNotAnswer},
    {"APP_REJECTED_LEAF", rejectedBy, Copy::runtimeTrustRejected},
    {"CONTAINER_REJECTED_LEAF", containerRejectedBy, Copy::runtimeTrustRejected},
    {"APP_STARTED_WITHOUT_TRUST_ENV", staleLauncher},
    {"APP_SHELL_SKIPPED_TRUST_SEED", shellSkippedSeed},
    {"TRUST_BUNDLE_MISSING", bundleMissing},
    {"TRUST_BUNDLE_STALE", bundleStale},
    {"TRUST_BUNDLE_NOT_ROOT_OWNED", bundleUnprotected},
};

std::string okText(const Health& health) {
  if (health.code == "TRUST_VERIFIED_BY_TRAFFIC" || health.code == "TRUST_TRUSTED_WITHOUT_KNOB") {
    return std::string(Copy::runtimeTrustVerifiedByTraffic.text());
  }
  if (health.code == "TRUST_SEEDED_FOR_SHELL" && !health.params.empty() && !health.params.front().empty()) {
    return Copy::runtimeTrustSetForShell.with(health.params.front());
  }
  if (health.code == "TRUST_KNOBS_NOT_REQUIRED") return std::string(Copy::runtimeTrustNotRequired.text());
  return std::string(Copy::runtimeTrustOk.text());
}

/// The text of a broken state whose code has no rule.
std::string brokenText(const Health& health) {
  if (health.code == "CLIENT_REJECTED_LEAF") return std::string(Copy::runtimeTrustRejected.text());
  if (health.code == "TRUST_KNOB_UNCOVERED") {
    if (const auto shell = first(health))
      return Copy::runtimeTrustNotSetForShell.with(lastPathComponent(*shell));
  }
  return std::string(Copy::runtimeTrustBroken.text());
}

}  // namespace

RowState runtimeTrustState(const Health& health) {
  if (health.state.empty()) return RowState::info(Copy::stateNotReported.text());
  if (health.state == "ok") return RowState::ok(okText(health));
  const auto* rule = std::ranges::find(rules, health.code, &Rule::code);
  if (rule == std::end(rules)) return healthState(health, Copy::runtimeTrustOk.text(), brokenText(health));
  const auto text = rule->text(health);
  return weighedUnlessUncertain(text ? *text : std::string(rule->withoutParameter.text()), health);
}

}  // namespace ostrel
