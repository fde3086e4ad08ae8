#pragma once

#include <optional>
#include <string>

#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Status/Snapshot.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// What a refresh takes in, as it comes.
struct StatusInputs {
  HelperRunner::HelperOutput helper;
  NetworkPreferences::TransparentProxies transparentProxies = {};
  NetworkPreferences::ContentFilter contentFilter = {};

  bool operator==(const StatusInputs&) const = default;
};

/// What they tell.
struct StatusReading {
  Snapshot snapshot;
  /// The version for which the extension is to be re-activated, empty when it is not said; absent when none
  /// is to be.
  std::optional<std::string> reactivateVersion = {};

  bool operator==(const StatusReading&) const = default;
};

/// Filled from the helper's report, or with `statusError` in its place when the helper failed or printed no
/// report; then from the network preferences.
StatusReading statusReading(const StatusInputs& sources);

/// Runs the helper for its status report. Blocks.
HelperRunner::HelperOutput runStatus(const HelperRunner& helper, const ChildStopTokens& ending = {});

/// True when the extension diverts traffic by one of the proxies, of those too that came with an error.
bool isConnected(const NetworkPreferences::TransparentProxies& loaded);

/// Adds what the network preferences say. What was not loaded keeps its default.
void addTransparentProxies(Snapshot& snapshot, const NetworkPreferences::TransparentProxies& loaded);
void addContentFilter(Snapshot& snapshot, const NetworkPreferences::ContentFilter& loaded);

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

  /// Takes over what the helper's report says.
  void addReport(const StatusReport& report);

  bool operator==(const SetupObservation&) const = default;
};

/// What the helper's status report says of the setup; nothing read when it fails or does not decode. Blocks.
SetupObservation readSetup(const HelperRunner& helper, const ChildStopTokens& ending = {});

/// The observation with what the network preferences say; after a failed load at most that the extension is
/// active.
SetupObservation withTransparentProxies(SetupObservation observation,
                                        const NetworkPreferences::TransparentProxies& loaded);

}  // namespace ostrel
