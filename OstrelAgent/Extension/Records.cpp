#include "OstrelAgent/Extension/Records.hpp"

#include "OstrelAgent/Status/RFC3339.hpp"
#include "OstrelAgent/Text/Utf8.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

namespace {

constexpr const char* reactivatedVersionName = "reactivated-version";

}  // namespace

std::string NetworkExtensionAssertion::record(Date observedAt) const {
  // Concatenated without the JSON library, since it runs every five seconds and nothing needs escaping.
  const auto word = [](bool value) { return value ? "true" : "false"; };
  std::string object = R"({"configuration_exists":)";
  object.append(word(egressLockExists)).append(R"(,"enabled":)").append(word(egressLockEnabled));
  if (mdmEnrolled) object.append(R"(,"mdm_enrolled":)").append(word(*mdmEnrolled));
  object.append(R"(,"observed_at":")").append(formatRFC3339(observedAt)).append(1, '"');
  if (transparentProxy) {
    object.append(R"(,"transparent_proxy_approved":)").append(word(transparentProxy->approved));
    object.append(R"(,"transparent_proxy_enabled":)").append(word(transparentProxy->enabled));
  }
  return object + '}';
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
    return files_->writeAtomically(folder_ + "/egress-lock-configuration.json", record).has_value();
  };
  // The folder is missing only at the first write.
  if (!write() && files_->makeFolders(folder_)) (void)write();
}

std::string Records::reactivatedVersion() const {
  const auto text = files_->read(folder_ + "/" + reactivatedVersionName);
  return text && isUtf8(*text) ? std::string(trimmed(*text)) : "";
}

void Records::recordReactivated(std::string_view version) const { write(reactivatedVersionName, version); }

/// Best effort: no user action depends on a record.
void Records::write(const std::string& name, std::string_view bytes) const {
  if (!files_->makeFolders(folder_)) return;
  (void)files_->writeAtomically(folder_ + "/" + name, bytes);
}

}  // namespace ostrel
