#pragma once

#include <expected>
#include <string>

#include "Platform/Bundle.hpp"
#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The bundle's Shell plug-in; a sentence when it is missing, damaged or of another build.
[[nodiscard]] std::expected<const ShellPlugIn*, std::string> loadShellPlugIn(const Bundle& bundle);

/// What the Shell plug-in needs of a bundle; the descriptors stay open to the caller. The bundle must outlive
/// it.
DesktopServices desktopServices(const Bundle& bundle, Log& log);

}  // namespace ostrel
