#pragma once

#include <string_view>

#include "Platform/NetworkPath.hpp"

namespace ostrel {

/// The network path from the kernel's routing tables (proc(5), net/route and net/ipv6_route): the interfaces
/// of default routes, each once, sorted by name.
NetworkPathUpdate pathOfRoutes(std::string_view routes, std::string_view ipv6Routes);

}  // namespace ostrel
