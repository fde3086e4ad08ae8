#pragma once

#include <expected>
#include <memory>
#include <string>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// See `ShellPlugIn`.
[[nodiscard]] std::expected<std::unique_ptr<Desktop>, std::string> makeQtDesktop(DesktopServices services);
std::unique_ptr<DesktopPictures> makeQtPictures(DesktopServices services, double scale);

}  // namespace ostrel
