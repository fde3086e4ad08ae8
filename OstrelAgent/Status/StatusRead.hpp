#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Status/Snapshot.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// The helper's response to "status --json".
struct HelperReading {
  static constexpr std::size_t maxKeptOutput = std::size_t{1} << 20;
  static constexpr std::size_t maxReportSize = std::size_t{8} << 20;

  std::int32_t status = 0;
  std::optional<std::string> output = {};   ///< as printed; absent when larger than `maxKeptOutput`
  std::optional<StatusReport> report = {};  ///< absent when the helper failed or printed no report
};

/// Reads the helper's response. If it equals the previous one, the previous reading is returned without
/// decoding.
std::shared_ptr<const HelperReading> readHelper(HelperRunner::HelperOutput answer,
                                                std::shared_ptr<const HelperReading> previous);

/// Runs the helper for its status report. Blocks.
HelperRunner::HelperOutput runStatus(const HelperRunner& helper, const ChildStopTokens& stopTokens = {});

/// The inputs that a refresh read; a load that timed out is absent.
struct StatusInputs {
  std::shared_ptr<const HelperReading> helper = {};
  std::optional<NetworkPreferences::TransparentProxies> transparentProxies = {};
  std::optional<NetworkPreferences::ContentFilter> contentFilter = {};
};

/// The snapshot of a refresh. Without a report it has a `statusError`; a missing load counts as failed.
Snapshot statusSnapshot(const StatusInputs& inputs);

/// The version for which the report requests a re-activation, empty when it names none; nullopt without a
/// request.
std::optional<std::string> pendingReactivation(const StatusInputs& inputs);

/// The Mac's setup at one time.
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

/// The setup from a refresh; the values of a missing report keep their defaults.
SetupObservation setupObservation(const StatusInputs& inputs);

}  // namespace ostrel
