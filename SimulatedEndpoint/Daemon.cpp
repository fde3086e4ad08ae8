#include "SimulatedEndpoint/Daemon.hpp"

#include <algorithm>
#include <utility>

#include "SimulatedEndpoint/DeviceCertificate.hpp"
#include "SimulatedEndpoint/EndpointReport.hpp"
#include "SimulatedEndpoint/ExtensionSettings.hpp"
#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {

namespace {

constexpr std::string_view tokenPrefix = "zq_enroll_";

Json success() { return {{"ok", true}}; }

Json failure(const std::string& message) { return {{"ok", false}, {"error", message}}; }

Json refusal(const char* reason, const std::string& message) {
  return {{"ok", false}, {"error", message}, {"reason", reason}};
}

/// A text of an object, empty when there is none.
std::string textAt(const Json& object, const char* key) {
  if (!object.is_object() || !object.contains(key) || !object[key].is_string()) return "";
  return object[key];
}

Json objectAt(const Json& object, const char* key) {
  return object.contains(key) && object[key].is_object() ? object[key] : Json::object();
}

bool isTrue(const Json& report, const char* key) { return report.contains(key) && report[key] == true; }

/// The prefix and the last characters of a token that is long enough for them to reveal little.
std::string masked(const std::string& token) {
  constexpr std::size_t shown = 4;
  const auto end = token.substr(token.size() - shown);
  const bool isPlain = std::ranges::all_of(end, [](char each) { return each > ' ' && each < '\x7f'; });
  const bool isLong = token.size() >= tokenPrefix.size() + 3 * shown;
  return std::string(tokenPrefix) + "…" + (isLong && isPlain ? end : "");
}

}  // namespace

Daemon::Daemon(Files& files, const SimulatedState& state, std::function<std::chrono::sys_seconds()> now)
    : files_(files), state_(state), now_(std::move(now)) {}

Json Daemon::answer(std::string_view request) {
  const auto json = parseJson(request);
  if (!json || !json->is_object()) return failure("The request is not a JSON object.");
  return answerTo(*json);
}

Json Daemon::answerTo(const Json& request) {
  const auto action = textAt(request, "action");
  if (action == "status") return status();
  if (action == "catrust") return certificateTrust();
  if (action == "checkin") return checkIn();
  if (action == "update") return update();
  if (action == "enroll") return enrol(request);
  return failure("The background service does not know this action.");
}

Json Daemon::report() const {
  const auto scenario = state_.observed();
  return scenario ? withTimes(scenario->report(), now_()) : Json::object();
}

Json Daemon::changed(const std::function<Json(Json)>& change, Json answer) {
  const auto done = state_.changeReport(change);
  return done ? std::move(answer) : failure(done.error());
}

Json Daemon::status() {
  auto answer = success();
  answer["enrolled"] = isTrue(report(), "enrolled");
  return answer;
}

Json Daemon::certificateTrust() {
  const auto certificate = deviceCertificate(files_, state_.root());
  if (!certificate) return failure(certificate.error());
  const auto current = report();
  const bool isTrusted = isTrue(current, "ca_trusted");
  auto answer = success();
  answer["trust_pending"] =
      current.contains("ca_trust_pending") ? isTrue(current, "ca_trust_pending") : !isTrusted;
  answer["ca_trusted"] = isTrusted;
  answer["ca_cert_pem"] = *certificate;
  return answer;
}

Json Daemon::checkIn() {
  const auto current = report();
  auto answer = success();
  answer["checked_in"] = false;
  if (!isTrue(current, "enrolled")) {
    answer["skipped"] = "this device is not enrolled";
    return answer;
  }
  if (current.contains("health")) answer["health"] = current["health"];
  if (const auto error = textAt(objectAt(current, "checkin"), "last_error"); !error.empty()) {
    answer["last_error"] = error;
    return answer;
  }
  answer["checked_in"] = true;
  const auto time = rfc3339(now_());
  return changed([&time](Json report) { return reportAfterCheckin(std::move(report), time); }, answer);
}

Json Daemon::update() {
  const auto offer = objectAt(report(), "update");
  const auto version = textAt(offer, "latest_version");
  const bool isOffered = textAt(offer, "state") == "available" || textAt(offer, "state") == "eol";
  if (!isOffered || version.empty()) return refusal("up_to_date", "There is no update to install.");
  if (const auto done = upgrade(files_, state_, version); !done) return failure(done.error());
  return success();
}

Json Daemon::enrol(const Json& request) {
  const auto token = textAt(request, "enrollment_token");
  if (!token.starts_with(tokenPrefix) || token.size() == tokenPrefix.size()) {
    return refusal("invalid_token", "Your organization does not know this token.");
  }
  const auto time = rfc3339(now_());
  auto answer = success();
  answer["enrolled"] = true;
  return changed([&](Json report) { return reportAfterEnrolment(std::move(report), masked(token), time); },
                 answer);
}

std::expected<void, std::string> upgrade(Files& files, const SimulatedState& state,
                                         const std::string& version) {
  auto bundled = ExtensionSettings(files, state.root()).bundle(version);
  if (!bundled) return bundled;
  return state.changeReport([&](Json report) { return reportAfterUpdate(std::move(report), version); });
}

}  // namespace ostrel::simulated
