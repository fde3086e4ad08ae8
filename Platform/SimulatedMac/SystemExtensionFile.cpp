#include "Platform/SimulatedMac/SystemExtensionFile.hpp"

#include <nlohmann/json.hpp>

namespace ostrel {

namespace {

using Json = nlohmann::json;
using Action = SystemExtensionAction;

constexpr const char* activation = "activation";
constexpr const char* deactivation = "deactivation";

bool isTextOrNull(const Json& value) { return value.is_string() || value.is_null(); }

bool isWhole(const Json& json) {
  if (!json.is_object()) return false;
  for (const auto* name : {"installed", "enabled", "bundled", "awaiting"}) {
    if (!json.contains(name)) return false;
  }
  const auto& awaiting = json["awaiting"];
  return isTextOrNull(json["installed"]) && json["enabled"].is_boolean() && json["bundled"].is_string() &&
         (awaiting.is_null() || awaiting == activation || awaiting == deactivation);
}

}  // namespace

std::optional<SystemExtensionState> systemExtensionOfFile(std::string_view bytes) {
  const auto json = Json::parse(bytes, nullptr, false);
  if (!isWhole(json)) return std::nullopt;
  SystemExtensionState state;
  if (json["installed"].is_string()) state.installedVersion = json["installed"];
  state.enabled = json["enabled"];
  state.bundledVersion = json["bundled"];
  if (!json["awaiting"].is_null()) {
    state.awaiting = json["awaiting"] == activation ? Action::activation : Action::deactivation;
  }
  return state;
}

std::string fileOfSystemExtension(const SystemExtensionState& state) {
  Json json = {{"installed", nullptr}, {"enabled", state.enabled}, {"bundled", state.bundledVersion}};
  if (!state.installedVersion.empty()) json["installed"] = state.installedVersion;
  json["awaiting"] = nullptr;
  if (state.awaiting) json["awaiting"] = *state.awaiting == Action::activation ? activation : deactivation;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

bool hasReached(const SystemExtensionState& state, Action action) {
  if (action == Action::deactivation) return state.installedVersion.empty();
  return state.enabled && state.installedVersion == state.bundledVersion;
}

SystemExtensionState after(Action action, SystemExtensionState state) {
  state.enabled = action == Action::activation;
  state.installedVersion = state.enabled ? state.bundledVersion : "";
  state.awaiting.reset();
  return state;
}

RequestStep requestStep(const SystemExtensionState& state, Action action, ApprovalRule rule) {
  const bool isInstalled = !state.installedVersion.empty();
  if (action == Action::deactivation && !isInstalled) return RequestStep::nothingInstalled;
  if (rule == ApprovalRule::never || hasReached(state, action)) return RequestStep::carryOut;
  if (rule == ApprovalRule::always) return RequestStep::awaitApproval;
  const bool isNew = action == Action::activation && !(isInstalled && state.enabled);
  return isNew ? RequestStep::awaitApproval : RequestStep::carryOut;
}

}  // namespace ostrel
