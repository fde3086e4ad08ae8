#include "OstrelAgent/Panel/StatusPanelModel.hpp"

namespace ostrel {

void StatusPanelModel::settleUpdate(Date now) {
  const bool isOffered = snap.update && (snap.update->state == "available" || snap.update->state == "eol");
  if (isOffered && updateInFlightUntil && now < *updateInFlightUntil) return;
  updateInFlight = false;
  updateInFlightUntil.reset();
}

}  // namespace ostrel
