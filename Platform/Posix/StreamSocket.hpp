#pragma once

#include <expected>
#include <string>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Opens a Unix-domain stream socket, closed on exec.
[[nodiscard]] std::expected<Descriptor, ErrorNumber> openStreamSocket();

/// An open folder and a short path to it, whatever its depth.
struct OpenFolder {
  Descriptor descriptor;
  std::string shortPath;
};
[[nodiscard]] std::expected<OpenFolder, ErrorNumber> openFolder(const std::string& path);

}  // namespace ostrel
