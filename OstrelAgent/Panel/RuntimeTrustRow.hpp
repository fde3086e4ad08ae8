#pragma once

#include "OstrelAgent/Panel/RowState.hpp"

namespace ostrel {

/// The row of the trust settings that package tools read from the user's shells.
RowState runtimeTrustState(const Snapshot::ComponentHealth& health);

}  // namespace ostrel
