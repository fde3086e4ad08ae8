#include "Platform/SimulatedMac/SimulatedNetworkPath.hpp"

#include <memory>
#include <optional>

namespace ostrel {

namespace {

/// Tells the path when it is another than the one before. The machine's own comes soon in any case, and with
/// it the first one.
class Follower {
 public:
  Follower(const SimulatedOrders& orders, std::function<void(const NetworkPathUpdate&)> updated)
      : orders_(orders), updated_(std::move(updated)) {}

  void start(NetworkPath& machines, const OrdersWatch& watch) {
    machinesToken_ = machines.follow([this](const NetworkPathUpdate& path) {
      machinesPath_ = path;
      tell();
    });
    ordersToken_ = watch([this] {
      if (machinesPath_) tell();
    });
  }

 private:
  void tell() {
    auto path = orders_.networkPath().value_or(*machinesPath_);
    if (path == told_) return;
    told_ = std::move(path);
    updated_(*told_);
  }

  const SimulatedOrders& orders_;
  const std::function<void(const NetworkPathUpdate&)> updated_;
  std::optional<NetworkPathUpdate> machinesPath_;
  std::optional<NetworkPathUpdate> told_;
  ScheduledWork machinesToken_;
  ScheduledWork ordersToken_;
};

}  // namespace

ScheduledWork SimulatedNetworkPath::follow(std::function<void(const NetworkPathUpdate&)> updated) {
  const auto follower = std::make_shared<Follower>(orders_, std::move(updated));
  follower->start(machines_, watch_);
  return follower;
}

}  // namespace ostrel
