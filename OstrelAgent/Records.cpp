#include "OstrelAgent/Records.hpp"

#include <nlohmann/json.hpp>

#include "OstrelAgent/RFC3339.hpp"
#include "OstrelAgent/Utf8.hpp"
#include "OstrelAgent/Whitespace.hpp"

namespace ostrel {

namespace {

constexpr const char* reactivatedVersionName = "reactivated-version";

}  // namespace

std::string NetworkExtensionAssertion::record(Date observedAt) const {
  nlohmann::json object = {{"configuration_exists", egressLockExists},
                           {"enabled", egressLockEnabled},
                           {"observed_at", formatRFC3339(observedAt)}};
  if (mdmEnrolled) object["mdm_enrolled"] = *mdmEnrolled;
  if (transparentProxy) {
    object["transparent_proxy_approved"] = transparentProxy->approved;
    object["transparent_proxy_enabled"] = transparentProxy->enabled;
  }
  return object.dump();
}

Records::Records(Files& files, const Clock& clock, const UserAccount& account)
    : files_(&files),
      clock_(&clock),
      folder_(account.homeFolder + "/Library/Application Support/ostrel-agent-endpoint") {}

void Records::recordAppliedCapture(const CaptureConfig& captureConfig) const {
  write("applied-capture.json", captureConfig.appliedRecord(clock_->now()));
}

void Records::recordNetworkExtensionAssertion(const NetworkExtensionAssertion& assertion) const {
  const auto write = [this, record = assertion.record(clock_->now())] {
    return files_->rewriteAtomically(folder_ + "/egress-lock-configuration.json", record).has_value();
  };
  // Only the first finds no folder.
  if (!write() && files_->makeFolders(folder_)) (void)write();
}

std::string Records::reactivatedVersion() const {
  const auto text = files_->read(folder_ + "/" + reactivatedVersionName);
  return text && isUtf8(*text) ? std::string(trimmed(*text)) : "";
}

void Records::recordReactivated(std::string_view version) const { write(reactivatedVersionName, version); }

/// Best effort: nothing that the person asked for depends on a record.
void Records::write(const std::string& name, std::string_view bytes) const {
  if (!files_->makeFolders(folder_)) return;
  (void)files_->writeAtomically(folder_ + "/" + name, bytes);
}

}  // namespace ostrel
