#include "Platform/SimulatedMac/SimulatedOverrides.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "Platform/Posix/FileLock.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel {

namespace {

using Json = nlohmann::json;

std::string nameOf(FaultyCall call) {
  return std::string(std::ranges::find(faultyCallNames, call, &FaultyCallName::call)->name);
}

/// The file's JSON object; empty when the file is missing or damaged.
Json overridesOf(const Files& files) {
  const auto bytes = files.read(simulatedstate::overrides);
  if (!bytes) return Json::object();
  auto overrides = Json::parse(*bytes, nullptr, false);
  return overrides.is_object() ? overrides : Json::object();
}

template <class Value>
Value member(const Json& object, const char* name, Value otherwise) {
  const auto found = object.find(name);
  if (found == object.end()) return otherwise;
  if constexpr (std::is_same_v<Value, std::string>) return found->is_string() ? Value(*found) : otherwise;
  if constexpr (std::is_same_v<Value, int>) return found->is_number_integer() ? Value(*found) : otherwise;
}

/// How many more calls are to fail.
int countOf(const Json& overrides, const std::string& name) {
  const auto order = overrides.find(name);
  return order != overrides.end() && order->is_object() ? member(*order, "count", 0) : 0;
}

PlatformError errorOf(const Json& order) {
  PlatformError error{member(order, "domain", std::string()), member(order, "code", 0),
                      member(order, "description", std::string())};
  if (error.description.empty()) {
    error.description = "The operation couldn't be completed. (" + error.domain + " error " +
                        std::to_string(error.code) + ".)";
  }
  return error;
}

}  // namespace

SimulatedOverrides::SimulatedOverrides(Files& files, std::string lockPath)
    : files_(files), lockPath_(std::move(lockPath)) {}

std::optional<PlatformError> SimulatedOverrides::takeFailure(FaultyCall call) {
  // Checked without the lock first: most calls have no override, and every refresh makes two.
  if (!files_.exists(simulatedstate::overrides)) return std::nullopt;
  const auto name = nameOf(call);
  if (countOf(overridesOf(files_), name) <= 0) return std::nullopt;
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return lock.error();
  auto overrides = overridesOf(files_);
  const int count = countOf(overrides, name);
  if (count <= 0) return std::nullopt;
  auto error = errorOf(overrides[name]);
  overrides[name]["count"] = count - 1;
  if (count == 1) overrides.erase(name);
  const auto text = overrides.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  if (!files_.writeAtomically(simulatedstate::overrides, text)) return std::nullopt;
  return error;
}

std::string SimulatedOverrides::word(const char* name) const {
  return member(overridesOf(files_), name, std::string());
}

ApprovalRule SimulatedOverrides::approvalRule() const {
  const auto approval = word("approval");
  if (approval == "never") return ApprovalRule::never;
  return approval == "always" ? ApprovalRule::always : ApprovalRule::whenNew;
}

bool SimulatedOverrides::completesAfterReboot() const { return word("result") == "after-reboot"; }

bool SimulatedOverrides::repeatsCallbacks() const { return word("callbacks") == "twice"; }

std::optional<NetworkPathUpdate> SimulatedOverrides::networkPath() const {
  const auto overrides = overridesOf(files_);
  const auto names = overrides.find("network");
  if (names == overrides.end() || !names->is_array()) return std::nullopt;
  NetworkPathUpdate path{.satisfied = !names->empty(), .interfaces = {}};
  for (const auto& name : *names) {
    if (!name.is_string()) return std::nullopt;
    path.interfaces.push_back(name);
  }
  return path;
}

std::optional<std::int64_t> SimulatedOverrides::latestWake() const {
  const auto overrides = overridesOf(files_);
  const auto wake = overrides.find("wake");
  if (wake == overrides.end() || !wake->is_number_integer()) return std::nullopt;
  return wake->get<std::int64_t>();
}

std::optional<NotificationAuthorization> SimulatedOverrides::notificationAuthorization() const {
  const auto authorization = word("notifications");
  if (authorization == "authorized") return NotificationAuthorization::authorized;
  if (authorization == "denied") return NotificationAuthorization::denied;
  if (authorization == "undetermined") return NotificationAuthorization::notDetermined;
  return std::nullopt;
}

}  // namespace ostrel
