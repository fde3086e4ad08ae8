#include "Platform/Linux/LinuxNetworkPath.hpp"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <utility>

#include "Platform/Linux/DefaultRoutes.hpp"
#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

namespace {

/// A socket that is readable after links or routes have changed; none when the kernel refuses it.
Descriptor changesOfRoutes() {
  Descriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
  const auto* plain = reinterpret_cast<const sockaddr*>(&address);
  if (!socket || ::bind(socket.number(), plain, sizeof address) != 0) return {};
  return socket;
}

/// Discards all pending messages. Errors are ignored, such as an overflow of the queue.
void drain(int socket) {
  std::array<char, 8192> buffer;
  while (::recv(socket, buffer.data(), buffer.size(), 0) >= 0 || errno == ENOBUFS || errno == EINTR) {
  }
}

/// Reports the path when it differs from the previous one.
class Follower : public std::enable_shared_from_this<Follower> {
 public:
  Follower(PosixMainQueue& queue, const Files& files, std::function<void(const NetworkPathUpdate&)> updated)
      : queue_(queue), files_(files), updated_(std::move(updated)) {}

  void start() {
    if (socket_) {
      watch_ = queue_.watch(socket_.number(), [this] {
        drain(socket_.number());
        readSoon();
      });
    }
    readSoon();
  }

 private:
  /// Runs after the timers that are due, and once for all messages of a change.
  void readSoon() {
    if (std::exchange(isReading_, true)) return;
    queue_.post([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->read();
    });
  }

  void read() {
    isReading_ = false;
    auto path = pathOfRoutes(files_.read("/proc/net/route").value_or(""),
                             files_.read("/proc/net/ipv6_route").value_or(""));
    if (path == told_) return;
    told_ = std::move(path);
    updated_(*told_);
  }

  PosixMainQueue& queue_;
  const Files& files_;
  std::function<void(const NetworkPathUpdate&)> updated_;
  std::optional<NetworkPathUpdate> told_;
  bool isReading_ = false;
  Descriptor socket_ = changesOfRoutes();
  ScheduledWork watch_;
};

}  // namespace

ScheduledWork LinuxNetworkPath::observe(std::function<void(const NetworkPathUpdate&)> updated) {
  const auto follower = std::make_shared<Follower>(mainQueue_, files_, std::move(updated));
  follower->start();
  return follower;
}

}  // namespace ostrel
