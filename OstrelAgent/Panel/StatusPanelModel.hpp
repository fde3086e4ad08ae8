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
  std::optional<Date> updateInFlightUntil;  ///< an update counts as failed from then on
  bool checkinInFlight = false;
  std::optional<std::string> checkinNotice;
  bool diagnosticsInFlight = false;
  std::optional<std::string> diagnosticsNotice;
  bool sendDiagnosticsInFlight = false;
  std::optional<Date> diagnosticsSentAt;
  std::optional<std::string> sendDiagnosticsError;

  /// Ends an update at work once the snapshot offers none any more, or its deadline has passed.
  void settleUpdate(Date now);
};

}  // namespace ostrel
