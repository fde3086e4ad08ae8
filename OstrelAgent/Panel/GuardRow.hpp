#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/Panel/RowState.hpp"

namespace ostrel {

/// Why Guard does not protect.
struct GuardFailure {
  std::string rollup;                   ///< text of the Guard row
  std::string consequence;              ///< what it means for the user
  bool isDegraded = false;              ///< amber instead of red
  Snapshot::ComponentHealth component;  ///< the component that causes it

  bool operator==(const GuardFailure&) const = default;
};

/// The most fundamental reason why Guard does not protect; nullopt when it does.
std::optional<GuardFailure> guardFailure(const Snapshot& snapshot);

/// A row for every ecosystem, the worst first, then by name.
std::vector<StatusComponent> ecosystemRows(const Snapshot& snapshot);

/// Names of the ecosystems that policy has switched off, ascending.
std::vector<std::string> offEcosystemNames(const Snapshot& snapshot);

/// The Guard row over the given ecosystem rows.
RowState guardRollup(const std::optional<GuardFailure>& failure,
                     const std::vector<StatusComponent>& ecosystems);
RowState guardRollup(const Snapshot& snapshot);

}  // namespace ostrel
