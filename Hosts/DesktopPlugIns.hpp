#pragma once

#include <expected>
#include <string>

#include "Platform/Bundle.hpp"
#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The bundle's Shell plug-in, or an error text when it is missing, damaged or from another build.
[[nodiscard]] std::expected<const ShellPlugIn*, std::string> loadShellPlugIn(const Bundle& bundle);

/// The bundle's files that the Shell plug-in needs, and every path as its own real one. The caller keeps the
/// descriptors; the bundle must outlive the result.
DesktopServices desktopServices(const Bundle& bundle, Log& log);

}  // namespace ostrel
