#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace ostrel {

/// A server on a real Unix-domain socket. Connections are served one after another, on a thread of the
/// server's own, and closed when the function returns.
class UnixServer {
 public:
  using Serve = std::function<void(int connection)>;

  UnixServer(const std::filesystem::path& path, Serve serve)
      : listening_(bindAt(path)), thread_([this, serve = std::move(serve)] { run(serve); }) {}
  UnixServer(const UnixServer&) = delete;
  UnixServer& operator=(const UnixServer&) = delete;
  ~UnixServer() {
    ::shutdown(listening_, SHUT_RDWR);
    thread_.join();
    ::close(listening_);
  }

  /// Reads a request to the end of its line, or until the client has closed.
  static std::string readLine(int connection) {
    std::string line;
    for (char byte = 0; byte != '\n' && ::recv(connection, &byte, 1, 0) == 1;) line += byte;
    return line;
  }

  /// Sends all of the bytes; a client that has closed loses them.
  static void send(int connection, std::string_view bytes) {
    while (!bytes.empty()) {
      const auto count = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count <= 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  /// Reads and sends nothing until the client has closed.
  static void awaitClose(int connection) {
    pollfd watched{connection, 0, 0};
    EXPECT_EQ(::poll(&watched, 1, 20'000), 1) << "the client does not close";
  }

  /// Sends blanks, one after the other, until the client has closed.
  static void drip(int connection) {
    pollfd watched{connection, POLLRDHUP, 0};
    while (::poll(&watched, 1, 1) == 0) send(connection, " ");
  }

 private:
  /// By way of the folder's descriptor, since the path may be too long for an address.
  static int bindAt(const std::filesystem::path& path) {
    const int folder = ::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto shortPath = "/proc/self/fd/" + std::to_string(folder) + "/" + path.filename().string();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::ranges::copy(shortPath, std::begin(address.sun_path));
    const int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isListening =
        listening >= 0 &&
        ::bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(listening, 8) == 0;
    if (!isListening) ADD_FAILURE() << "no socket at " << path;
    ::close(folder);
    return listening;
  }

  void run(const Serve& serve) const {
    for (int connection = 0; (connection = ::accept(listening_, nullptr, nullptr)) >= 0;) {
      serve(connection);
      ::close(connection);
    }
  }

  const int listening_;
  std::thread thread_;
};

}  // namespace ostrel
