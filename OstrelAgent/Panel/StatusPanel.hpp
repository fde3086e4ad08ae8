#pragma once

#include <string>
#include <vector>

#include "OstrelAgent/Panel/RowState.hpp"
#include "OstrelAgent/Text/TimeTexts.hpp"

namespace ostrel {

/// The egress-lock row.
RowState egressLockState(const Snapshot& snapshot);

/// The credential row, which is also the identity fact.
RowState credentialState(const Snapshot& snapshot);

/// The capture row and the health it shows: the daemon's when that needs attention, else the extension's.
RowState captureState(const Snapshot& snapshot);
const Snapshot::ComponentHealth& captureHealth(const Snapshot& snapshot);

/// The device-CA row and the health it shows: that of the trust when it needs attention, else that of the
/// expiry.
RowState deviceCAState(const Snapshot& snapshot);
const Snapshot::ComponentHealth& deviceCAHealth(const Snapshot& snapshot);

/// The rows below the health roll-up; an id is the key of the row's label.
std::vector<StatusComponent> components(const Snapshot& snapshot);

/// One row for all components. A row that is switched off counts as a note, not as a fault.
RowState healthRollup(const std::vector<StatusComponent>& components);

/// When the device last checked in with the service.
std::string checkinFact(const Snapshot& snapshot, Date now, const TimeTexts& times);

/// The containers row for the names of the running runtimes.
RowState containersState(const Snapshot& snapshot, const std::vector<std::string>& runningRuntimes);

}  // namespace ostrel
