#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The shortest report that reads, with its verdict.
inline std::string reportText(std::string_view verdict = "protected") {
  return R"({"version":"2.4.0","ca_trusted":true,"token_present":true,"token_managed":false,)"
         R"("daemon_listening":true,"health":{"verdict":")" +
         std::string(verdict) + R"("}})";
}

/// A report of two runtimes in which a download was blocked.
inline std::string blockedReportText(std::string_view verdict = "protected") {
  auto report = reportText(verdict);
  report.insert(report.find(R"("verdict")"),
                R"("runtime_trust":{"state":"broken","code":"CONTAINER_REJECTED_LEAF",)"
                R"("params":["Podman","Colima"]},)");
  return report;
}

/// The members of a component, with a detail of its own.
inline std::string componentText(const std::string& detail) {
  return R"("state":"ok","code":"C","severity":"red","self_healing":true,"expected_clear_by":"2025-01-02T12:00:00+02:00","params":["p","q"],)"
         R"("detail":")" +
         detail + '"';
}

/// A document with every known key.
inline std::string fullReportText() {
  return R"({"version":"2.4.0","ca_trusted":true,"token_present":true,"token_managed":true,"token_masked":"ost_…9f",
    "enrolled":true,"daemon_listening":true,"reactivate_pending":true,"reactivate_version":"2.3.0",
    "ca_trust_pending":true,"update":{"state":"eol","latest_version":"3.0","minimum_supported_version":"2.9"},
    "health":{"daemon":{)" +
         componentText("1") + R"(},"ca":{)" + componentText("2") + R"(},"sysext":{)" + componentText("3") +
         R"(},"credential":{)" + componentText("5") + R"(},"capture_set":{)" + componentText("6") +
         R"(},"ca_expiry":{)" + componentText("7") + R"(},"egress_lock":{)" + componentText("8") +
         R"(},"runtime_trust":{)" + componentText("4") +
         R"(,"knobs":[{"env":"E","ecosystem":"npm","protects":["npm"],"covered":true,"reason":"r","evidence":"e",
    "program":"p","last_seen":"l","file":"f"}]},"verdict":"protected","off_by_policy":2},
    "features":[{"id":"guard","state":"on","ecosystems":[{"ecosystem":"npm","capability":"c","state":"s"}]}],
    "interception":{"policy_direct_flows":12},"checkin":{"last_success":"2025-01-02T10:00:00Z","last_error":"timeout"}})";
}

}  // namespace ostrel
