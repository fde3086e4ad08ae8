#pragma once

#include <chrono>
#include <cstddef>
#include <expected>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Posix/Descriptor.hpp"
#include "SimulatedEndpoint/FaultMode.hpp"

namespace ostrel::simulated {

/// Listens on a Unix-domain socket; the socket's file is removed with it.
class ListeningSocket {
 public:
  /// Real path, of any length. A socket that nobody listens on is replaced; any other file is a fault.
  [[nodiscard]] static std::expected<std::unique_ptr<ListeningSocket>, std::string> at(
      const std::string& path);
  ~ListeningSocket();
  ListeningSocket(const ListeningSocket&) = delete;
  ListeningSocket& operator=(const ListeningSocket&) = delete;

  int number() const { return socket_.number(); }

 private:
  ListeningSocket(std::string path, Descriptor socket) : path_(std::move(path)), socket_(std::move(socket)) {}

  std::string path_;
  Descriptor socket_;
};

/// What the server asks of the daemon.
struct ControlService {
  std::function<bool()> closesEarly;  ///< whether a new connection is closed unread
  std::function<Reply(const std::string& request)> reply;
};

/// Serves one request a connection, any number of connections side by side. One thread.
class ControlServer {
 public:
  ControlServer(const ListeningSocket& socket, ControlService service)
      : socket_(socket), service_(std::move(service)) {}

  /// Serves until the descriptor can be read.
  void serveUntil(int stop);

 private:
  struct Connection {
    Descriptor socket;
    std::string received = {};
    std::string answer = {};
    std::size_t sent = 0;
    /// Set once the request has been read: the answer is due then.
    std::optional<std::chrono::steady_clock::time_point> answerAt = {};
    bool isSilent = false;

    bool isDue() const;
  };

  void accept();
  /// Each returns true when the connection is over.
  [[nodiscard]] bool goOn(Connection& connection, short events);
  [[nodiscard]] bool receive(Connection& connection);
  [[nodiscard]] static bool send(Connection& connection);
  int timeoutInMilliseconds() const;

  const ListeningSocket& socket_;
  const ControlService service_;
  std::list<Connection> connections_;
};

}  // namespace ostrel::simulated
