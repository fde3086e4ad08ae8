#include "Platform/Posix/PosixUnixSockets.hpp"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <utility>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

namespace {

std::unexpected<ErrorNumber> failure(int number) { return std::unexpected(ErrorNumber{number}); }

int connectTo(int socket, const std::string& path) {
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) return ENAMETOOLONG;
  address.sun_family = AF_UNIX;
  std::ranges::copy(path, std::begin(address.sun_path));
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  return ::connect(socket, generic, sizeof address) == 0 ? 0 : errno;
}

/// Connects by way of the folder's descriptor, whose path is short however deep the folder lies.
int connectThroughFolder(int socket, const std::filesystem::path& path) {
  const Descriptor folder(::open(path.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return errno;
  const auto name = path.filename().string();
  return connectTo(socket, "/proc/self/fd/" + std::to_string(folder.number()) + "/" + name);
}

class PosixUnixSocket final : public UnixSocket {
 public:
  PosixUnixSocket(Descriptor socket, const PathMap& realPath)
      : socket_(std::move(socket)), realPath_(realPath) {}

  void setTimeouts(std::chrono::seconds receive, std::chrono::seconds send) override {
    setTimeout(SO_RCVTIMEO, receive);
    setTimeout(SO_SNDTIMEO, send);
  }

  std::expected<void, ErrorNumber> connect(const std::string& path) override {
    const auto real = realPath_(path);
    const bool fits = real.size() < sizeof sockaddr_un::sun_path;
    const int error = fits ? connectTo(socket_.number(), real) : connectThroughFolder(socket_.number(), real);
    if (error != 0) return failure(error);
    return {};
  }

  std::expected<std::size_t, ErrorNumber> write(std::string_view bytes) override {
    const auto count = ::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count < 0) return failure(errno);
    return static_cast<std::size_t>(count);
  }

  std::expected<std::size_t, ErrorNumber> read(std::span<char> buffer) override {
    const auto count = ::recv(socket_.number(), buffer.data(), buffer.size(), 0);
    if (count < 0) return failure(errno);
    return static_cast<std::size_t>(count);
  }

 private:
  void setTimeout(int option, std::chrono::seconds limit) {
    timeval value{};
    value.tv_sec = limit.count();
    (void)::setsockopt(socket_.number(), SOL_SOCKET, option, &value, sizeof value);
  }

  Descriptor socket_;
  const PathMap realPath_;
};

}  // namespace

PosixUnixSockets::PosixUnixSockets(PathMap realPath) : realPath_(std::move(realPath)) {}

std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> PosixUnixSockets::open() {
  Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket) return failure(errno);
  return std::make_unique<PosixUnixSocket>(std::move(socket), realPath_);
}

}  // namespace ostrel
