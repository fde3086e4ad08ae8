#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/Status/Snapshot.hpp"

namespace ostrel {

/// The state behind the panel.
struct StatusPanelModel {
  Snapshot snap;
  bool hasReading = false;  ///< the first refresh has ended
  std::vector<std::string> runningContainerRuntimes;
  double panelMaxHeight = 0;  ///< points; 0 until a screen is known
  bool updateInFlight = false;
  std::optional<Date> updateInFlightUntil;  ///< a running update counts as failed after this time
  bool checkinInFlight = false;
  std::optional<std::string> checkinNotice;
  bool diagnosticsInFlight = false;
  std::optional<std::string> diagnosticsNotice;
  bool sendDiagnosticsInFlight = false;
  std::optional<Date> diagnosticsSentAt;
  std::optional<std::string> sendDiagnosticsError;

  /// Ends a running update once the snapshot offers none or its deadline has passed.
  void settleUpdate(Date now);
};

}  // namespace ostrel
