#pragma once

#include <string_view>

#include "Platform/NetworkPath.hpp"

namespace ostrel {

/// The path that the kernel's tables of routes give, as it prints them (proc(5), net/route and
/// net/ipv6_route): the interfaces that a default route leads to, each once, by name.
NetworkPathUpdate pathOfRoutes(std::string_view routes, std::string_view ipv6Routes);

}  // namespace ostrel
