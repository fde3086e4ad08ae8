#include "Tools/PreviewDocument.hpp"

#include <algorithm>
#include <utility>

#include "OstrelAgent/Status/RFC3339.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "OstrelAgent/Status/StatusReport.hpp"
#include "OstrelAgent/Text/Json.hpp"

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

/// A report with the agent's other inputs, which are absent in a bare report.
struct Envelope {
  std::optional<StatusReport> report;  ///< absent when the helper printed no readable report
  std::optional<std::int64_t> helperStatus;
  std::optional<std::vector<Proxy>> transparentProxies;
  std::optional<Filter> egressFilter;
  std::optional<bool> mdmEnrolled;
  std::optional<std::vector<std::string>> runningContainerRuntimes;
  std::optional<std::string> now;
};

void read(const JsonReader& reader, Proxy& proxy) {
  reader.required("enabled", proxy.enabled);
  reader.optional("connected", proxy.connected);
}

void read(const JsonReader& reader, Filter& filter) {
  reader.optional("provider", filter.provider);
  reader.required("enabled", filter.enabled);
}

void read(const JsonReader& reader, Envelope& envelope) {
  reader.optional("helper_status", envelope.helperStatus);
  reader.optional("transparent_proxies", envelope.transparentProxies);
  reader.optional("egress_filter", envelope.egressFilter);
  reader.optional("mdm_enrolled", envelope.mdmEnrolled);
  reader.optional("running_container_runtimes", envelope.runningContainerRuntimes);
  reader.optional("now", envelope.now);
  // The agent ignores the output of a failed helper.
  if (envelope.helperStatus.value_or(0) == 0) reader.optional("report", envelope.report);
}

/// True for an object with "report", or with another key of an envelope and no key of a report.
bool isEnvelope(const JsonObject& document) {
  constexpr std::string_view keys[] = {
      "helper_status", "transparent_proxies",        "egress_filter",
      "mdm_enrolled",  "running_container_runtimes", "now",
  };
  const auto isGiven = [&](std::string_view key) { return document.contains(key); };
  return isGiven("report") || (!isGiven("version") && std::ranges::any_of(keys, isGiven));
}

[[nodiscard]] std::expected<Envelope, JsonError> decodeEnvelope(std::string_view bytes) {
  const auto document = JsonObject::parse(bytes);
  if (!document) return std::unexpected(document.error());
  if (isEnvelope(*document)) {
    auto envelope = document->as<Envelope>();
    if (!envelope || envelope->report || envelope->helperStatus) return envelope;
    return std::unexpected(JsonError{"report", "is missing"});
  }
  auto report = document->as<StatusReport>();
  if (!report) return std::unexpected(std::move(report.error()));
  Envelope envelope;
  envelope.report = std::move(*report);
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

std::expected<Date, JsonError> readPreviewTime(std::string path, std::string_view text) {
  if (const auto time = parseRFC3339(text)) return *time;
  return std::unexpected(JsonError{std::move(path), "is not a time such as 2025-01-02T03:04:05Z"});
}

std::expected<PreviewReading, JsonError> readPreviewDocument(std::string_view bytes) {
  const auto envelope = decodeEnvelope(bytes);
  if (!envelope) return std::unexpected(envelope.error());
  PreviewReading reading;
  if (const auto& now = envelope->now) {
    const auto time = readPreviewTime("now", *now);
    if (!time) return std::unexpected(time.error());
    reading.now = *time;
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
