#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "SimulatedEndpoint/HelperBehaviour.hpp"
#include "SimulatedEndpoint/Scenario.hpp"

namespace ostrel::simulated {

enum class HelperCommand { status, copyDiagnostics, sendDiagnostics, uninstall };

struct HelperRequest {
  HelperCommand command;
  std::string networkExtension;
};

/// The request of a command line without the program's name, nothing when it is none.
std::optional<HelperRequest> helperRequest(std::span<const std::string_view> arguments);

/// The word by which a scenario's helper behaviour names the command.
std::string_view helperCommandWord(HelperCommand command);

/// The status report, its times those of now.
std::string statusAnswer(const Scenario& scenario, const HelperBehaviour& behaviour,
                         std::chrono::sys_seconds now);

/// A support bundle that names no user and no place.
std::string diagnosticsAnswer(const Scenario& scenario, std::string_view networkExtension,
                              std::chrono::sys_seconds now);

/// How sending such a bundle ended.
std::string sendAnswer(Sending sending, std::chrono::sys_seconds now);

}  // namespace ostrel::simulated
