#include "OstrelAgent/Status/StatusReport.hpp"

#include <array>

namespace ostrel {

namespace {

using Update = StatusReport::Update;
using Health = StatusReport::Health;
using Component = Health::Component;
using Knob = Health::Knob;
using RuntimeTrust = Health::RuntimeTrust;
using Feature = StatusReport::Feature;
using Ecosystem = Feature::Ecosystem;
using Interception = StatusReport::Interception;
using Checkin = StatusReport::Checkin;

constexpr JsonField updateFields[] = {
    JsonFields<Update>::field<&Update::state>("state"),
    JsonFields<Update>::field<&Update::latestVersion>("latest_version"),
    JsonFields<Update>::field<&Update::minimumSupportedVersion>("minimum_supported_version"),
};
constexpr JsonObject updateLayout{updateFields};

/// The seven keys of a component, for a component itself and for what extends it.
template <class Owner>
constexpr std::array<JsonField, 7> componentFields = {{
    JsonFields<Owner>::template field<&Owner::state>("state"),
    JsonFields<Owner>::template field<&Owner::detail>("detail"),
    JsonFields<Owner>::template field<&Owner::code>("code"),
    JsonFields<Owner>::template field<&Owner::severity>("severity"),
    JsonFields<Owner>::template field<&Owner::selfHealing>("self_healing"),
    JsonFields<Owner>::template field<&Owner::expectedClearBy>("expected_clear_by"),
    JsonFields<Owner>::template field<&Owner::params>("params"),
}};
constexpr JsonObject componentLayout{componentFields<Component>};

constexpr JsonField knobFields[] = {
    JsonFields<Knob>::field<&Knob::env>("env"),
    JsonFields<Knob>::field<&Knob::ecosystem>("ecosystem"),
    JsonFields<Knob>::field<&Knob::protects>("protects"),
    JsonFields<Knob>::field<&Knob::covered>("covered"),
    JsonFields<Knob>::field<&Knob::reason>("reason"),
    JsonFields<Knob>::field<&Knob::evidence>("evidence"),
    JsonFields<Knob>::field<&Knob::program>("program"),
    JsonFields<Knob>::field<&Knob::lastSeen>("last_seen"),
    JsonFields<Knob>::field<&Knob::file>("file"),
};
constexpr JsonObject knobLayout{knobFields};

constexpr auto runtimeTrustFields = [] {
  std::array<JsonField, 8> fields;
  for (std::size_t i = 0; i < 7; ++i) fields[i] = componentFields<RuntimeTrust>[i];
  fields[7] = JsonFields<RuntimeTrust>::field<&RuntimeTrust::knobs>("knobs", &knobLayout);
  return fields;
}();
constexpr JsonObject runtimeTrustLayout{runtimeTrustFields};

constexpr JsonField healthFields[] = {
    JsonFields<Health>::field<&Health::daemon>("daemon", &componentLayout),
    JsonFields<Health>::field<&Health::ca>("ca", &componentLayout),
    JsonFields<Health>::field<&Health::sysext>("sysext", &componentLayout),
    JsonFields<Health>::field<&Health::runtimeTrust>("runtime_trust", &runtimeTrustLayout),
    JsonFields<Health>::field<&Health::credential>("credential", &componentLayout),
    JsonFields<Health>::field<&Health::captureSet>("capture_set", &componentLayout),
    JsonFields<Health>::field<&Health::caExpiry>("ca_expiry", &componentLayout),
    JsonFields<Health>::field<&Health::egressLock>("egress_lock", &componentLayout),
    JsonFields<Health>::field<&Health::verdict>("verdict"),
    JsonFields<Health>::field<&Health::offByPolicy>("off_by_policy"),
};
constexpr JsonObject healthLayout{healthFields};

constexpr JsonField ecosystemFields[] = {
    JsonFields<Ecosystem>::field<&Ecosystem::ecosystem>("ecosystem"),
    JsonFields<Ecosystem>::field<&Ecosystem::capability>("capability"),
    JsonFields<Ecosystem>::field<&Ecosystem::state>("state"),
};
constexpr JsonObject ecosystemLayout{ecosystemFields};

constexpr JsonField featureFields[] = {
    JsonFields<Feature>::field<&Feature::id>("id"),
    JsonFields<Feature>::field<&Feature::state>("state"),
    JsonFields<Feature>::field<&Feature::ecosystems>("ecosystems", &ecosystemLayout),
};
constexpr JsonObject featureLayout{featureFields};

constexpr JsonField interceptionFields[] = {
    JsonFields<Interception>::field<&Interception::policyDirectFlows>("policy_direct_flows"),
};
constexpr JsonObject interceptionLayout{interceptionFields};

constexpr JsonField checkinFields[] = {
    JsonFields<Checkin>::field<&Checkin::lastSuccess>("last_success"),
    JsonFields<Checkin>::field<&Checkin::lastError>("last_error"),
};
constexpr JsonObject checkinLayout{checkinFields};

constexpr JsonField reportFields[] = {
    JsonFields<StatusReport>::field<&StatusReport::version>("version"),
    JsonFields<StatusReport>::field<&StatusReport::caTrusted>("ca_trusted"),
    JsonFields<StatusReport>::field<&StatusReport::tokenPresent>("token_present"),
    JsonFields<StatusReport>::field<&StatusReport::tokenManaged>("token_managed"),
    JsonFields<StatusReport>::field<&StatusReport::tokenMasked>("token_masked"),
    JsonFields<StatusReport>::field<&StatusReport::enrolled>("enrolled"),
    JsonFields<StatusReport>::field<&StatusReport::daemonListening>("daemon_listening"),
    JsonFields<StatusReport>::field<&StatusReport::reactivatePending>("reactivate_pending"),
    JsonFields<StatusReport>::field<&StatusReport::reactivateVersion>("reactivate_version"),
    JsonFields<StatusReport>::field<&StatusReport::caTrustPending>("ca_trust_pending"),
    JsonFields<StatusReport>::field<&StatusReport::update>("update", &updateLayout),
    JsonFields<StatusReport>::field<&StatusReport::health>("health", &healthLayout),
    JsonFields<StatusReport>::field<&StatusReport::features>("features", &featureLayout),
    JsonFields<StatusReport>::field<&StatusReport::interception>("interception", &interceptionLayout),
    JsonFields<StatusReport>::field<&StatusReport::checkin>("checkin", &checkinLayout),
};
constexpr JsonObject reportLayout{reportFields};

template <class Value>
[[nodiscard]] std::expected<Value, JsonError> decodeWhole(std::string_view bytes, const JsonObject& layout) {
  Value value;
  if (auto decoded = decodeJson(bytes, layout, &value); !decoded) {
    return std::unexpected(std::move(decoded.error()));
  }
  return value;
}

}  // namespace

std::expected<StatusReport, JsonError> StatusReport::decode(std::string_view bytes) {
  return decodeWhole<StatusReport>(bytes, reportLayout);
}

std::expected<Health, JsonError> Health::decode(std::string_view bytes) {
  return decodeWhole<Health>(bytes, healthLayout);
}

const JsonObject& statusReportLayout() { return reportLayout; }

}  // namespace ostrel
