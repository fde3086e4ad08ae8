#pragma once

#include <expected>
#include <string>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Opens a Unix-domain stream socket, closed on exec.
[[nodiscard]] std::expected<Descriptor, ErrorNumber> openStreamSocket();

/// A folder held open, and a path to it that is short however deep the folder lies.
struct OpenFolder {
  Descriptor descriptor;
  std::string shortPath;
};
[[nodiscard]] std::expected<OpenFolder, ErrorNumber> openFolder(const std::string& path);

}  // namespace ostrel
