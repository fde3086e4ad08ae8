#include "SimulatedEndpoint/HelperAnswers.hpp"

#include <utility>

#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {

namespace {

bool isEqual(std::span<const std::string_view> arguments, std::initializer_list<std::string_view> wanted) {
  return std::equal(arguments.begin(), arguments.end(), wanted.begin(), wanted.end());
}

/// State, code and severity of each component; what else a report holds may name people and places.
Json componentStates(const Json& report) {
  Json states = Json::object();
  if (!report.contains("health") || !report["health"].is_object()) return states;
  for (const auto& [name, component] : report["health"].items()) {
    if (!component.is_object()) continue;
    for (const auto* key : {"state", "code", "severity"}) {
      if (component.contains(key)) states[name][key] = component[key];
    }
  }
  return states;
}

Json logLines(const Json& report, std::chrono::sys_seconds now) {
  using std::chrono::seconds;
  const auto line = [&](int age, const std::string& text) {
    return rfc3339(now - seconds(age)) + " " + text;
  };
  const bool isListening = report.contains("daemon_listening") && report["daemon_listening"] == true;
  Json lines = {line(7260, "daemon: capture set loaded, 19 hosts"),
                line(7259, "daemon: device certificate loaded from the System keychain"),
                line(125, "checkin: policy is up to date")};
  lines.push_back(isListening ? line(31, "listener: 3 flows inspected, 0 blocked")
                              : line(31, "listener: closed, waiting to be started"));
  return lines;
}

}  // namespace

std::optional<HelperRequest> helperRequest(std::span<const std::string_view> arguments) {
  if (isEqual(arguments, {"status", "--json"})) return HelperRequest{HelperCommand::status, {}};
  if (isEqual(arguments, {"uninstall", "--untrust-ca", "--removal-kind=app_deactivate"})) {
    return HelperRequest{HelperCommand::uninstall, {}};
  }
  if (arguments.size() < 3 || arguments[0] != "diagnostics" || arguments[1] != "--network-extension") {
    return std::nullopt;
  }
  if (arguments.size() == 3) return HelperRequest{HelperCommand::copyDiagnostics, std::string(arguments[2])};
  if (arguments.size() > 4 || arguments[3] != "--send") return std::nullopt;
  return HelperRequest{HelperCommand::sendDiagnostics, std::string(arguments[2])};
}

std::string_view helperCommandWord(HelperCommand command) {
  switch (command) {
    case HelperCommand::status:
      return "status";
    case HelperCommand::copyDiagnostics:
    case HelperCommand::sendDiagnostics:
      return "diagnostics";
    case HelperCommand::uninstall:
      return "uninstall";
  }
  return "";
}

std::string statusAnswer(const Scenario& scenario, const HelperBehaviour& behaviour,
                         std::chrono::sys_seconds now) {
  return printedReport(withTimes(scenario.report(), now), behaviour);
}

std::string diagnosticsAnswer(const Scenario& scenario, std::string_view networkExtension,
                              std::chrono::sys_seconds now) {
  const auto report = withTimes(scenario.report(), now);
  const auto parsed = parseJson(networkExtension);
  const auto part = [&](const char* key) { return report.contains(key) ? report[key] : Json(); };
  return printJson({{"generated_at", rfc3339(now)},
                    {"versions", {{"agent", part("version")}, {"system", "macOS 15.3 (24D60), arm64"}}},
                    {"host", "<redacted>"},
                    {"user", "<redacted>"},
                    {"token", part("token_masked")},
                    {"daemon_listening", part("daemon_listening")},
                    {"components", componentStates(report)},
                    {"checkin", part("checkin")},
                    {"network_extension", parsed ? *parsed : Json(std::string(networkExtension))},
                    {"log", logLines(report, now)}});
}

std::string sendAnswer(Sending sending, std::chrono::sys_seconds now) {
  switch (sending) {
    case Sending::sent:
      return printJson({{"sent", true}, {"sent_at", rfc3339(now)}});
    case Sending::retry:
      return printJson({{"sent", false}, {"retry_after_seconds", 840}});
    case Sending::error:
      return printJson({{"sent", false}, {"error", "the service did not accept the bundle (status 503)"}});
  }
  return "";
}

}  // namespace ostrel::simulated
