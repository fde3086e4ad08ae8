#include "Platform/Posix/PosixUnixSockets.hpp"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <utility>

#include "Platform/Posix/StreamSocket.hpp"

namespace ostrel {

namespace {

using Connected = std::expected<void, ErrorNumber>;

std::unexpected<ErrorNumber> failure(int number) { return std::unexpected(ErrorNumber{number}); }

bool fitsAnAddress(const std::string& path) { return path.size() < sizeof sockaddr_un::sun_path; }

Connected connectTo(int socket, const std::string& path) {
  if (!fitsAnAddress(path)) return failure(ENAMETOOLONG);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::ranges::copy(path, std::begin(address.sun_path));
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (::connect(socket, generic, sizeof address) != 0) return failure(errno);
  return {};
}

Connected connectThroughFolder(int socket, const std::filesystem::path& path) {
  const auto folder = openFolder(path.parent_path());
  if (!folder) return std::unexpected(folder.error());
  return connectTo(socket, folder->shortPath + "/" + path.filename().string());
}

class PosixUnixSocket final : public UnixSocket {
 public:
  PosixUnixSocket(Descriptor socket, const PathMap& realPath)
      : socket_(std::move(socket)), realPath_(realPath) {}

  void setTimeouts(std::chrono::milliseconds receive, std::chrono::milliseconds send) override {
    setTimeout(SO_RCVTIMEO, receive);
    setTimeout(SO_SNDTIMEO, send);
  }

  Connected connect(const std::string& path) override {
    const auto real = realPath_(path);
    return fitsAnAddress(real) ? connectTo(socket_.number(), real)
                               : connectThroughFolder(socket_.number(), real);
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
  void setTimeout(int option, std::chrono::milliseconds limit) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(limit);
    timeval value{};
    value.tv_sec = static_cast<time_t>(seconds.count());
    value.tv_usec = static_cast<suseconds_t>(std::chrono::microseconds(limit - seconds).count());
    (void)::setsockopt(socket_.number(), SOL_SOCKET, option, &value, sizeof value);
  }

  Descriptor socket_;
  const PathMap realPath_;
};

}  // namespace

PosixUnixSockets::PosixUnixSockets(PathMap realPath) : realPath_(std::move(realPath)) {}

std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> PosixUnixSockets::open() {
  auto socket = openStreamSocket();
  if (!socket) return std::unexpected(socket.error());
  return std::make_unique<PosixUnixSocket>(std::move(*socket), realPath_);
}

}  // namespace ostrel
