#include "Tools/PreviewDocument.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "OstrelAgent/Status/RFC3339.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "OstrelAgent/Status/StatusReport.hpp"
#include "OstrelAgent/Text/JsonDecoder.hpp"

namespace ostrel {

namespace {

struct Proxy {
  bool enabled = false;
  std::optional<bool> connected;
};

struct Filter {
  std::optional<bool> provider;
  bool enabled = false;
};

/// A report with what the agent learns elsewhere. A bare report is read as one that gives nothing else.
struct Envelope {
  std::optional<StatusReport> report;  ///< nothing when the helper printed none that can be read
  std::optional<std::int64_t> helperStatus;
  std::optional<std::vector<Proxy>> transparentProxies;
  std::optional<Filter> egressFilter;
  std::optional<bool> mdmEnrolled;
  std::optional<std::vector<std::string>> runningContainerRuntimes;
  std::optional<std::string> now;
};

constexpr JsonField proxyFields[] = {
    JsonFields<Proxy>::field<&Proxy::enabled>("enabled"),
    JsonFields<Proxy>::field<&Proxy::connected>("connected"),
};
constexpr JsonObject proxyLayout{proxyFields};

constexpr JsonField filterFields[] = {
    JsonFields<Filter>::field<&Filter::provider>("provider"),
    JsonFields<Filter>::field<&Filter::enabled>("enabled"),
};
constexpr JsonObject filterLayout{filterFields};

/// The keys of an envelope other than "report".
constexpr JsonField surroundingFields[] = {
    JsonFields<Envelope>::field<&Envelope::helperStatus>("helper_status"),
    JsonFields<Envelope>::field<&Envelope::transparentProxies>("transparent_proxies", &proxyLayout),
    JsonFields<Envelope>::field<&Envelope::egressFilter>("egress_filter", &filterLayout),
    JsonFields<Envelope>::field<&Envelope::mdmEnrolled>("mdm_enrolled"),
    JsonFields<Envelope>::field<&Envelope::runningContainerRuntimes>("running_container_runtimes"),
    JsonFields<Envelope>::field<&Envelope::now>("now"),
};
constexpr JsonObject surroundingLayout{surroundingFields};

/// An object with "report", or one that gives something else of an envelope and is no report itself.
bool isEnvelope(std::string_view bytes) {
  const auto document = nlohmann::json::parse(bytes, nullptr, false);
  if (!document.is_object()) return false;
  const auto isGiven = [&](const JsonField& field) { return document.contains(std::string(field.key)); };
  return document.contains("report") ||
         (!document.contains("version") && std::ranges::any_of(surroundingFields, isGiven));
}

[[nodiscard]] std::expected<Envelope, JsonError> decodeEnvelope(std::string_view bytes) {
  Envelope envelope;
  if (!isEnvelope(bytes)) {
    auto report = StatusReport::decode(bytes);
    if (!report) return std::unexpected(std::move(report.error()));
    envelope.report = std::move(*report);
    return envelope;
  }
  if (auto read = decodeJson(bytes, surroundingLayout, &envelope); !read) {
    return std::unexpected(std::move(read.error()));
  }
  // The agent does not look at the output of a helper that failed.
  if (envelope.helperStatus.value_or(0) != 0) return envelope;
  const JsonField reportField[] = {
      JsonFields<Envelope>::field<&Envelope::report>("report", &statusReportLayout())};
  if (auto read = decodeJson(bytes, JsonObject{reportField}, &envelope); !read) {
    return std::unexpected(std::move(read.error()));
  }
  if (!envelope.report && !envelope.helperStatus) return std::unexpected(JsonError{"report", "is missing"});
  return envelope;
}

NetworkPreferences::TransparentProxies proxiesOf(const Envelope& envelope) {
  std::vector<TransparentProxyConfiguration> proxies;
  if (envelope.transparentProxies) {
    for (const auto& proxy : *envelope.transparentProxies) {
      proxies.push_back({proxy.enabled, proxy.connected.value_or(proxy.enabled)});
    }
  } else if (envelope.report && envelope.report->health && envelope.report->health->sysext &&
             envelope.report->health->sysext->state == "ok") {
    proxies.push_back({.enabled = true, .connected = true});
  }
  return proxies;
}

NetworkPreferences::ContentFilter filterOf(const Envelope& envelope) {
  if (envelope.egressFilter) {
    return ContentFilterConfiguration{envelope.egressFilter->provider.value_or(true),
                                      envelope.egressFilter->enabled};
  }
  const auto health = envelope.report ? envelope.report->health : std::nullopt;
  const bool isOn = health && health->egressLock && health->egressLock->state == "ok";
  return ContentFilterConfiguration{isOn, isOn};
}

}  // namespace

std::expected<PreviewReading, JsonError> readPreviewDocument(std::string_view bytes) {
  const auto envelope = decodeEnvelope(bytes);
  if (!envelope) return std::unexpected(envelope.error());
  PreviewReading reading;
  if (const auto& now = envelope->now) {
    reading.now = parseRFC3339(*now);
    if (!reading.now)
      return std::unexpected(
          JsonError{.path = "now", .reason = "is not a time such as 2025-01-02T03:04:05Z"});
  }
  const auto status = envelope->helperStatus.value_or(0);
  if (!std::in_range<std::int32_t>(status))
    return std::unexpected(JsonError{.path = "helper_status", .reason = "is not an exit status"});
  auto& snapshot = reading.model.snap;
  auto helper = HelperReading{.status = static_cast<std::int32_t>(status)};
  if (status == 0) helper.report = envelope->report;
  snapshot = statusSnapshot({.helper = std::make_shared<const HelperReading>(std::move(helper)),
                             .transparentProxies = proxiesOf(*envelope),
                             .contentFilter = filterOf(*envelope)});
  snapshot.mdmEnrolled = envelope->mdmEnrolled.value_or(false);
  reading.model.hasReading = true;
  reading.model.runningContainerRuntimes =
      envelope->runningContainerRuntimes.value_or(std::vector<std::string>());
  std::ranges::sort(reading.model.runningContainerRuntimes);
  return reading;
}

}  // namespace ostrel
