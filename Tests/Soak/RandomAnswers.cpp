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

Json component(Random& random) {
  return {{"state", random.oneIn(2) ? "ok" : "failed"},
          {"code", random.pick(codes)},
          {"severity", random.pick(severities)},
          {"self_healing", random.oneIn(2)}};
}

/// Some of the containers' runtimes had a download rejected.
Json blockedContainers(Random& random) {
  Json component = {
      {"state", "failed"}, {"code", "CONTAINER_REJECTED_LEAF"}, {"severity", "yellow"}, {"params", {""}}};
  for (const auto* runtime : containerRuntimes) {
    if (random.oneIn(2)) component["params"].push_back(runtime);
  }
  return component;
}

Json health(Random& random) {
  Json health = {{"verdict", random.pick(verdicts)}, {"off_by_policy", random.below(3)}};
  for (const auto* name : {"daemon", "ca", "sysext", "egress_lock", "runtime_trust"}) {
    if (!random.oneIn(4)) health[name] = component(random);
  }
  if (random.oneIn(4)) health["runtime_trust"] = blockedContainers(random);
  return health;
}

std::string report(Random& random) {
  Json report = {{"version", "4." + std::to_string(random.below(20))},
                 {"ca_trusted", !random.oneIn(8)},
                 {"token_present", true},
                 {"token_managed", false},
                 {"enrolled", !random.oneIn(8)},
                 {"daemon_listening", !random.oneIn(8)},
                 {"ca_trust_pending", random.oneIn(8)}};
  if (!random.oneIn(8)) report["health"] = health(random);
  if (random.oneIn(3)) {
    report["update"] = {{"state", random.oneIn(3) ? "eol" : "available"}, {"latest_version", "5.0"}};
  }
  if (random.oneIn(2)) {
    report["features"] = {{{"id", "guard"},
                           {"state", "on"},
                           {"ecosystems", {{{"ecosystem", "npm"}, {"capability", "c"}, {"state", "s"}}}}}};
  }
  if (random.oneIn(8)) {
    report["reactivate_pending"] = true;
    report["reactivate_version"] = "4." + std::to_string(random.below(20));
  }
  if (random.oneIn(2)) report["checkin"] = {{"last_success", "2025-01-02T10:00:00Z"}};
  return report.dump();
}

std::string garbage(Random& random) {
  std::string bytes(random.below(2000), '\0');
  for (auto& byte : bytes) byte = static_cast<char>(random.below(256));
  return bytes;
}

std::string spoiled(Random& random) {
  switch (random.below(4)) {
    case 0:
      return garbage(random);
    case 1:
      return std::string(50000, random.oneIn(2) ? '[' : '{');
    case 2:
      return "";
    default:
      const auto whole = report(random);
      return whole.substr(0, random.below(whole.size()));
  }
}

}  // namespace

FakeChildProcesses::Result randomStatus(Random& random) {
  switch (random.below(10)) {
    case 0:
      return ChildResult{0, spoiled(random)};
    case 1:
      return ChildResult{static_cast<std::int32_t>(1 + random.below(255)), report(random)};
    case 2:
      return std::unexpected(PlatformError{posixErrorDomain, EAGAIN, "Resource temporarily unavailable"});
    default:
      return ChildResult{0, report(random)};
  }
}

FakeChildProcesses::Result randomResult(Random& random) {
  if (random.oneIn(6))
    return std::unexpected(PlatformError{posixErrorDomain, ENOMEM, "Cannot allocate memory"});
  const Json answer = {{"sent", random.oneIn(2)}};
  return ChildResult{random.oneIn(3) ? SIGTERM : 0, random.oneIn(3) ? garbage(random) : answer.dump()};
}

FakeUnixSockets::Pieces randomAnswer(Random& random) {
  Json answer = {{"ok", !random.oneIn(4)}, {"checked_in", !random.oneIn(4)}};
  if (random.oneIn(2)) answer["health"] = health(random);
  const auto text = answer.dump() + "\n";
  switch (random.below(8)) {
    case 0:
      return {garbage(random)};
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
