#pragma once

#include <expected>
#include <optional>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/Json.hpp"

/// The part of a scenario that says which other software the simulated Mac has.
namespace ostrel::simulated {

/// Every key with its default: a Mac without other software.
Json macWithoutSoftware();

/// A sentence on what is wrong with the values of an object that has every key.
std::optional<std::string> macFault(const Json& mac);

/// Gives the simulated Mac exactly this software; offsets among the times count from now. The files take real
/// paths.
[[nodiscard]] std::expected<void, std::string> arrangeMac(const Json& mac, Files& files,
                                                          const HostRoot& root);

}  // namespace ostrel::simulated
