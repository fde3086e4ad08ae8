#include "Platform/Posix/PosixUnixSockets.hpp"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <mutex>
#include <set>
#include <utility>

#include "Platform/Posix/StreamSocket.hpp"

namespace ostrel {

namespace {

using Connected = std::expected<void, ErrorNumber>;

std::unexpected<ErrorNumber> failure(int number) { return std::unexpected(ErrorNumber{number}); }

bool fitsAnAddress(const std::string& path) { return path.size() < sizeof sockaddr_un::sun_path; }

[[nodiscard]] Connected connectTo(int socket, const std::string& path) {
  if (!fitsAnAddress(path)) return failure(ENAMETOOLONG);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::ranges::copy(path, std::begin(address.sun_path));
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (::connect(socket, generic, sizeof address) != 0) return failure(errno);
  return {};
}

[[nodiscard]] Connected connectThroughFolder(int socket, const std::filesystem::path& path) {
  const auto folder = openFolder(path.parent_path());
  if (!folder) return std::unexpected(folder.error());
  return connectTo(socket, folder->shortPath + "/" + path.filename().string());
}

}  // namespace

/// The open sockets, to be shut down by `endAll`.
class PosixUnixSockets::OpenSockets {
 public:
  void add(int socket) {
    const std::lock_guard lock(mutex_);
    numbers_.insert(socket);
    if (haveEnded_) ::shutdown(socket, SHUT_RDWR);
  }

  void remove(int socket) {
    const std::lock_guard lock(mutex_);
    numbers_.erase(socket);
  }

  void end() {
    const std::lock_guard lock(mutex_);
    haveEnded_ = true;
    for (const int socket : numbers_) ::shutdown(socket, SHUT_RDWR);
  }

  bool haveEnded() const { return haveEnded_; }

 private:
  std::mutex mutex_;  // guards the descriptors
  std::set<int> numbers_;
  std::atomic<bool> haveEnded_ = false;
};

class PosixUnixSockets::Socket final : public UnixSocket {
 public:
  Socket(Descriptor socket, const PathMap& realPath, std::shared_ptr<OpenSockets> all)
      : socket_(std::move(socket)), realPath_(realPath), all_(std::move(all)) {
    all_->add(socket_.number());
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() override { all_->remove(socket_.number()); }

  void setTimeouts(std::chrono::milliseconds receive, std::chrono::milliseconds send) override {
    sendLimit_ = send;
    setTimeout(SO_RCVTIMEO, receive);
    setTimeout(SO_SNDTIMEO, send);
  }

  Connected connect(const std::string& path) override {
    const auto real = realPath_(path);
    const auto connected = connectInTime([&] {
      return fitsAnAddress(real) ? connectTo(socket_.number(), real)
                                 : connectThroughFolder(socket_.number(), real);
    });
    return unlessEnded(connected);
  }

  [[nodiscard]] std::expected<std::size_t, ErrorNumber> write(std::string_view bytes) override {
    return unlessEnded(counted(::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL)));
  }

  [[nodiscard]] std::expected<std::size_t, ErrorNumber> read(std::span<char> buffer) override {
    return unlessEnded(counted(::recv(socket_.number(), buffer.data(), buffer.size(), 0)));
  }

 private:
  using Count = std::expected<std::size_t, ErrorNumber>;

  static Count counted(ssize_t count) {
    if (count < 0) return failure(errno);
    return static_cast<std::size_t>(count);
  }

  template <class Result>
  Result unlessEnded(const Result& result) const {
    return all_->haveEnded() ? Result(failure(ECANCELED)) : result;
  }

  /// Waits for room in the peer's queue in short steps, since shutdown() does not wake this wait.
  Connected connectInTime(const std::function<Connected()>& connectOnce) {
    using std::chrono::steady_clock;
    constexpr std::chrono::milliseconds piece(50);
    const bool isLimited = sendLimit_ > std::chrono::milliseconds(0);
    const auto deadline = steady_clock::now() + sendLimit_;
    auto left = sendLimit_;
    Connected connected;
    do {
      setTimeout(SO_SNDTIMEO, isLimited ? std::min(piece, left) : piece);
      connected = connectOnce();
      left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    } while (connected == failure(EAGAIN) && !all_->haveEnded() && (!isLimited || left.count() > 0));
    setTimeout(SO_SNDTIMEO, sendLimit_);
    return connected;
  }

  void setTimeout(int option, std::chrono::milliseconds limit) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(limit);
    timeval value{};
    value.tv_sec = static_cast<time_t>(seconds.count());
    value.tv_usec = static_cast<suseconds_t>(std::chrono::microseconds(limit - seconds).count());
    (void)::setsockopt(socket_.number(), SOL_SOCKET, option, &value, sizeof value);
  }

  Descriptor socket_;
  const PathMap realPath_;
  const std::shared_ptr<OpenSockets> all_;
  std::chrono::milliseconds sendLimit_{0};
};

PosixUnixSockets::PosixUnixSockets(PathMap realPath)
    : realPath_(std::move(realPath)), open_(std::make_shared<OpenSockets>()) {}

std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> PosixUnixSockets::open() {
  if (open_->haveEnded()) return failure(ECANCELED);
  auto socket = openStreamSocket();
  if (!socket) return std::unexpected(socket.error());
  return std::make_unique<Socket>(std::move(*socket), realPath_, open_);
}

void PosixUnixSockets::endAll() { open_->end(); }

}  // namespace ostrel
