#include "SimulatedEndpoint/ControlServer.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace ostrel::simulated {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t mostConnections = 64;
constexpr std::size_t longestRequest = std::size_t{1} << 20;

std::string because(const std::string& sentence) { return sentence + ": " + std::strerror(errno); }

/// The address of a file of the folder by the folder's descriptor: the real path may be longer than an
/// address holds.
std::optional<sockaddr_un> addressIn(const Descriptor& folder, const std::string& name) {
  const auto path = "/proc/self/fd/" + std::to_string(folder.number()) + "/" + name;
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) return std::nullopt;
  address.sun_family = AF_UNIX;
  std::ranges::copy(path, std::begin(address.sun_path));
  return address;
}

/// Whether nothing but a socket that was left behind is in the way, and that no more.
bool clearPlace(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return errno == ENOENT;
  if (S_ISSOCK(status.st_mode)) return ::unlink(path.c_str()) == 0;
  errno = EEXIST;
  return false;
}

}  // namespace

std::expected<std::unique_ptr<ListeningSocket>, std::string> ListeningSocket::at(const std::string& path) {
  const std::filesystem::path file = path;
  std::error_code error;
  std::filesystem::create_directories(file.parent_path(), error);
  const Descriptor folder(::open(file.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return std::unexpected(because("cannot open " + file.parent_path().string()));
  const auto address = addressIn(folder, file.filename().string());
  Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!address || !socket) return std::unexpected(because("cannot make a socket"));
  if (!clearPlace(path)) return std::unexpected(because("cannot serve at " + path));
  const auto* generic = reinterpret_cast<const sockaddr*>(&*address);
  if (::bind(socket.number(), generic, sizeof *address) != 0 || ::listen(socket.number(), 16) != 0) {
    return std::unexpected(because("cannot serve at " + path));
  }
  return std::unique_ptr<ListeningSocket>(new ListeningSocket(path, std::move(socket)));
}

ListeningSocket::~ListeningSocket() { ::unlink(path_.c_str()); }

bool ControlServer::Connection::isDue() const { return answerAt && !isSilent && *answerAt <= Clock::now(); }

void ControlServer::serveUntil(int stop) {
  while (true) {
    std::vector<pollfd> watched = {{stop, POLLIN, 0}, {socket_.number(), POLLIN, 0}};
    if (connections_.size() >= mostConnections) watched[1].fd = -1;
    for (const auto& connection : connections_) {
      const short wanted = connection.isDue() ? POLLOUT : POLLIN;
      watched.push_back({connection.socket.number(), wanted, 0});
    }
    if (::poll(watched.data(), watched.size(), timeoutInMilliseconds()) < 0 && errno != EINTR) return;
    if (watched[0].revents != 0) return;
    auto next = watched.begin() + 2;
    std::erase_if(connections_, [&](Connection& each) { return goOn(each, (next++)->revents); });
    if (watched[1].revents != 0) accept();
  }
}

int ControlServer::timeoutInMilliseconds() const {
  std::optional<Clock::time_point> first;
  for (const auto& connection : connections_) {
    if (!connection.answerAt || connection.isSilent || connection.isDue()) continue;
    first = std::min(first.value_or(*connection.answerAt), *connection.answerAt);
  }
  if (!first) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*first - Clock::now());
  return static_cast<int>(std::clamp<long long>(left.count(), 0, 60'000));
}

void ControlServer::accept() {
  Descriptor socket(::accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!socket || service_.closesEarly()) return;
  connections_.push_back({.socket = std::move(socket)});
}

bool ControlServer::goOn(Connection& connection, short events) {
  if (connection.isDue()) return send(connection);
  return events != 0 && receive(connection);
}

bool ControlServer::receive(Connection& connection) {
  std::array<char, 65536> bytes;
  const auto count = ::recv(connection.socket.number(), bytes.data(), bytes.size(), 0);
  if (count < 0) return errno != EAGAIN && errno != EINTR;
  if (count == 0) return true;
  // What follows the request is read and forgotten.
  if (connection.answerAt) return false;
  connection.received.append(bytes.data(), static_cast<std::size_t>(count));
  const auto end = connection.received.find('\n');
  if (end == std::string::npos) return connection.received.size() > longestRequest;
  auto reply = service_.reply(connection.received.substr(0, end));
  connection.received.clear();
  connection.answer = std::move(reply.bytes);
  connection.answerAt = Clock::now() + reply.delay;
  connection.isSilent = reply.isSilent;
  return false;
}

bool ControlServer::send(Connection& connection) {
  const auto rest = std::string_view(connection.answer).substr(connection.sent);
  const auto count = ::send(connection.socket.number(), rest.data(), rest.size(), MSG_NOSIGNAL);
  if (count < 0) return errno != EAGAIN && errno != EINTR;
  connection.sent += static_cast<std::size_t>(count);
  return connection.sent == connection.answer.size();
}

}  // namespace ostrel::simulated
