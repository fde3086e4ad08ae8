#pragma once

#include <chrono>
#include <optional>

#include "Platform/Log.hpp"
#include "Platform/SingleInstance.hpp"
#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// How long to wait for an earlier menu-bar agent to exit: a relaunch may start this one while the other
/// still runs.
inline constexpr std::chrono::milliseconds earlierMenuBarTimeout{3000};

/// Claims the user's one menu-bar icon; nullopt, with a message on standard error, when another process has
/// it. When claiming itself fails, the claim is empty and the reason logged: the icon still has to appear.
/// Blocks.
[[nodiscard]] std::optional<SingleInstance::Claim> claimMenuBar(SingleInstance& instance,
                                                                StandardStreams& streams, Log& log);

}  // namespace ostrel
