#include "Platform/Posix/StreamSocket.hpp"

#include <fcntl.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

namespace ostrel {

std::expected<Descriptor, ErrorNumber> openStreamSocket() {
  Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket) return std::unexpected(ErrorNumber{errno});
  return socket;
}

std::expected<OpenFolder, ErrorNumber> openFolder(const std::string& path) {
  Descriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return std::unexpected(ErrorNumber{errno});
  auto shortPath = "/proc/self/fd/" + std::to_string(folder.number());
  return OpenFolder{std::move(folder), std::move(shortPath)};
}

}  // namespace ostrel
