#pragma once

#include <chrono>
#include <optional>

#include "Platform/Log.hpp"
#include "Platform/SingleInstance.hpp"
#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// How long an earlier menu-bar agent may take to end: a relaunch starts the next one meanwhile.
inline constexpr std::chrono::milliseconds patienceWithEarlierMenuBar{3000};

/// Claims the person's one menu-bar icon; nothing when another process shows it, which standard error tells.
/// Where nothing can be claimed the claim is empty and the log tells why: a person must not miss the icon for
/// that. Blocks.
[[nodiscard]] std::optional<SingleInstance::Claim> claimMenuBar(SingleInstance& instance,
                                                                StandardStreams& streams, Log& log);

}  // namespace ostrel
