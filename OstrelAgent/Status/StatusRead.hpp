#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Status/Snapshot.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// What the helper answered to "status --json".
struct HelperReading {
  static constexpr std::size_t maxKeptOutput = std::size_t{1} << 20;
  static constexpr std::size_t maxReportSize = std::size_t{8} << 20;

  std::int32_t status = 0;
  std::optional<std::string> output = {};   ///< as printed; absent when larger than `maxKeptOutput`
  std::optional<StatusReport> report = {};  ///< absent when the helper failed or printed no report
};

/// Reads an answer of the helper. One that equals the previous one is not decoded again: the previous reading
/// is returned.
std::shared_ptr<const HelperReading> readHelper(HelperRunner::HelperOutput answer,
                                                std::shared_ptr<const HelperReading> previous);

/// Runs the helper for its status report. Blocks.
HelperRunner::HelperOutput runStatus(const HelperRunner& helper, const ChildStopTokens& stopTokens = {});

/// What a refresh read. A load that did not come in time is absent.
struct StatusInputs {
  std::shared_ptr<const HelperReading> helper = {};
  std::optional<NetworkPreferences::TransparentProxies> transparentProxies = {};
  std::optional<NetworkPreferences::ContentFilter> contentFilter = {};
};

/// The snapshot of a refresh: `statusError` in place of a report that is absent; a load that is absent counts
/// like one that failed.
Snapshot statusSnapshot(const StatusInputs& inputs);

/// The version for which the report wants the extension re-activated, empty when it names none; absent when
/// it wants nothing.
std::optional<std::string> pendingReactivation(const StatusInputs& inputs);

/// One reading of the Mac's setup.
struct SetupObservation {
  bool statusRead = false;
  bool enrolled = false;
  bool caTrustPending = false;
  bool daemonListening = false;
  bool sysextActive = false;  ///< a transparent proxy is connected
  std::string sysextState;
  std::string sysextCode;
  std::optional<bool> transparentProxyEnabled;  ///< absent when the configurations could not be loaded
  std::string verdict;

  bool operator==(const SetupObservation&) const = default;
};

/// The setup as a refresh read it; nothing of a report that is absent.
SetupObservation setupObservation(const StatusInputs& inputs);

}  // namespace ostrel
