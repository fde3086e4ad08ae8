#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "Platform/SystemExtensions.hpp"

namespace ostrel {

/// The one system extension of the simulated Mac.
struct SystemExtensionState {
  std::string installedVersion;  ///< empty when none is installed
  bool enabled = false;
  std::string bundledVersion = "4.12.0";          ///< of the extension in the application's bundle
  std::optional<SystemExtensionAction> awaiting;  ///< what the user is asked to approve

  bool operator==(const SystemExtensionState&) const = default;
};

/// The state in the file `simulatedstate::systemExtension`, or nullopt when the bytes are damaged.
std::optional<SystemExtensionState> systemExtensionOfFile(std::string_view bytes);
std::string fileOfSystemExtension(const SystemExtensionState& state);

/// True when nothing is left to do: the bundle's version is installed and enabled, or none is installed.
bool hasReached(const SystemExtensionState& state, SystemExtensionAction action);

/// The state after the action; no approval is awaited.
SystemExtensionState after(SystemExtensionAction action, SystemExtensionState state);

/// The immediate outcome of a request.
enum class RequestStep { nothingInstalled, carryOut, awaitApproval };
RequestStep requestStep(const SystemExtensionState& state, SystemExtensionAction action, ApprovalRule rule);

}  // namespace ostrel
