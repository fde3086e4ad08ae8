#include "Tests/Soak/RandomAnswers.hpp"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace ostrel {

namespace {

using Json = nlohmann::json;

constexpr const char* verdicts[] = {"protected",     "protected", "degraded", "not_protected",
                                    "not_protected", "",          "tea"};
constexpr const char* codes[] = {"CA_TRUST_PENDING", "SYSEXT_INACTIVE", "EGRESS_LOCK_OFF", "",
                                 "UNKNOWN_CODE"};
constexpr const char* severities[] = {"red", "yellow", "info", "tea"};

Json component(Random& dice) {
  return {{"state", dice.oneIn(2) ? "ok" : "failed"},
          {"code", dice.pick(codes)},
          {"severity", dice.pick(severities)},
          {"self_healing", dice.oneIn(2)}};
}

/// Some of the containers' runtimes had a download rejected.
Json blockedContainers(Random& dice) {
  Json component = {
      {"state", "failed"}, {"code", "CONTAINER_REJECTED_LEAF"}, {"severity", "yellow"}, {"params", {""}}};
  for (const auto* runtime : containerRuntimes) {
    if (dice.oneIn(2)) component["params"].push_back(runtime);
  }
  return component;
}

Json health(Random& dice) {
  Json health = {{"verdict", dice.pick(verdicts)}, {"off_by_policy", dice.below(3)}};
  for (const auto* name : {"daemon", "ca", "sysext", "egress_lock", "runtime_trust"}) {
    if (!dice.oneIn(4)) health[name] = component(dice);
  }
  if (dice.oneIn(4)) health["runtime_trust"] = blockedContainers(dice);
  return health;
}

std::string report(Random& dice) {
  Json report = {{"version", "4." + std::to_string(dice.below(20))},
                 {"ca_trusted", !dice.oneIn(8)},
                 {"token_present", true},
                 {"token_managed", false},
                 {"enrolled", !dice.oneIn(8)},
                 {"daemon_listening", !dice.oneIn(8)},
                 {"ca_trust_pending", dice.oneIn(8)}};
  if (!dice.oneIn(8)) report["health"] = health(dice);
  if (dice.oneIn(3)) {
    report["update"] = {{"state", dice.oneIn(3) ? "eol" : "available"}, {"latest_version", "5.0"}};
  }
  if (dice.oneIn(2)) {
    report["features"] = {{{"id", "guard"},
                           {"state", "on"},
                           {"ecosystems", {{{"ecosystem", "npm"}, {"capability", "c"}, {"state", "s"}}}}}};
  }
  if (dice.oneIn(8)) {
    report["reactivate_pending"] = true;
    report["reactivate_version"] = "4." + std::to_string(dice.below(20));
  }
  if (dice.oneIn(2)) report["checkin"] = {{"last_success", "2025-01-02T10:00:00Z"}};
  return report.dump();
}

std::string garbage(Random& dice) {
  std::string bytes(dice.below(2000), '\0');
  for (auto& byte : bytes) byte = static_cast<char>(dice.below(256));
  return bytes;
}

std::string spoiled(Random& dice) {
  switch (dice.below(4)) {
    case 0:
      return garbage(dice);
    case 1:
      return std::string(50000, dice.oneIn(2) ? '[' : '{');
    case 2:
      return "";
    default:
      const auto whole = report(dice);
      return whole.substr(0, dice.below(whole.size()));
  }
}

}  // namespace

FakeChildProcesses::Result randomStatus(Random& dice) {
  switch (dice.below(10)) {
    case 0:
      return ChildResult{0, spoiled(dice)};
    case 1:
      return ChildResult{static_cast<std::int32_t>(1 + dice.below(255)), report(dice)};
    case 2:
      return std::unexpected(PlatformError{posixErrorDomain, EAGAIN, "Resource temporarily unavailable"});
    default:
      return ChildResult{0, report(dice)};
  }
}

FakeChildProcesses::Result randomResult(Random& dice) {
  if (dice.oneIn(6))
    return std::unexpected(PlatformError{posixErrorDomain, ENOMEM, "Cannot allocate memory"});
  const Json answer = {{"sent", dice.oneIn(2)}};
  return ChildResult{dice.oneIn(3) ? SIGTERM : 0, dice.oneIn(3) ? garbage(dice) : answer.dump()};
}

FakeUnixSockets::Pieces randomAnswer(Random& dice) {
  Json answer = {{"ok", !dice.oneIn(4)}, {"checked_in", !dice.oneIn(4)}};
  if (dice.oneIn(2)) answer["health"] = health(dice);
  const auto text = answer.dump() + "\n";
  switch (dice.below(8)) {
    case 0:
      return {garbage(dice)};
    case 1:
      return {std::unexpected(ErrorNumber{EAGAIN})};
    case 2:
      return {text.substr(0, text.size() / 2)};
    case 3:
      return {};
    case 4:
      return {text.substr(0, 5), text.substr(5)};
    default:
      return {text};
  }
}

}  // namespace ostrel
