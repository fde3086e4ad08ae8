#include "Benchmarks/SocketBenchmark.hpp"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Benchmarks/BenchTable.hpp"
#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixUnixSockets.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

namespace {

constexpr std::size_t messageSize = 1024;

std::string filledUp(const std::string& start, const std::string& end) {
  return start + std::string(messageSize - start.size() - end.size(), 'x') + end;
}

const std::string requestStart = R"({"action":"checkin","reason":")";
const std::string request = filledUp(requestStart, "\"}\n");
const std::string reason(messageSize - requestStart.size() - 3, 'x');
const std::string answer = filledUp(R"({"ok":true,"checked_in":true,"skipped":")", "\"}\n");

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::ranges::copy(path, std::begin(address.sun_path));
  return address;
}

const sockaddr* generic(const sockaddr_un& address) { return reinterpret_cast<const sockaddr*>(&address); }

/// Reads until a line feed; false when none arrives.
bool readLine(int socket) {
  char buffer[4096];
  for (ssize_t count = 0; (count = ::read(socket, buffer, sizeof buffer)) > 0;) {
    if (buffer[count - 1] == '\n') return true;
  }
  return false;
}

bool writeWhole(int socket, const std::string& message) {
  return ::write(socket, message.data(), message.size()) == static_cast<ssize_t>(message.size());
}

/// A folder with a socket whose server sends the same response to every request.
class Server {
 public:
  Server() {
    const auto address = addressOf(path());
    const bool isListening =
        ::bind(listening_, generic(address), sizeof address) == 0 && ::listen(listening_, 8) == 0;
    if (!isListening) throw std::runtime_error("no socket");
    thread_ = std::thread([this] { run(); });
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() {
    ::shutdown(listening_, SHUT_RDWR);
    if (thread_.joinable()) thread_.join();
    ::close(listening_);
  }

  std::string path() const { return folder_ / "control.sock"; }

 private:
  void run() const {
    for (int connection = 0; (connection = ::accept(listening_, nullptr, nullptr)) >= 0;) {
      if (readLine(connection)) (void)writeWhole(connection, answer);
      ::close(connection);
    }
  }

  TemporaryFolder folder_;
  const int listening_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::thread thread_;
};

bool exchangeBare(const std::string& path) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const auto address = addressOf(path);
  const bool isAnswered = ::connect(socket, generic(address), sizeof address) == 0 &&
                          writeWhole(socket, request) && readLine(socket);
  ::close(socket);
  return isAnswered;
}

double microsecondsOf(const auto& exchange) {
  const auto start = std::chrono::steady_clock::now();
  if (!exchange()) throw std::runtime_error("a request went unanswered");
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

SocketFigures measureSocket(int exchanges) {
  const Server server;
  const auto unmapped = [](std::string_view path) { return std::string(path); };
  PosixUnixSockets sockets(unmapped);
  const PosixFiles files(unmapped);
  const ControlSocket controlSocket(sockets, files, server.path());
  std::vector<double> control;
  std::vector<double> bare;
  for (int i = 0; i < exchanges; ++i) {
    control.push_back(microsecondsOf([&] {
      return controlSocket.send("checkin", {{"reason", reason}}).has_value();
    }));
    bare.push_back(microsecondsOf([&] { return exchangeBare(server.path()); }));
  }
  return {median(control), median(bare)};
}

}  // namespace ostrel
