#include "Platform/SimulatedMac/SimulatedSystemWake.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace ostrel {

namespace {

class Follower {
 public:
  Follower(const SimulatedOrders& orders, std::function<void()> woke)
      : orders_(orders), woke_(std::move(woke)) {}

  void start(SystemWake& machines, const OrdersWatch& watch) {
    machinesToken_ = machines.follow(woke_);
    ordersToken_ = watch([this] { ordersChanged(); });
    latest_ = orders_.latestWake();
  }

 private:
  void ordersChanged() {
    const auto ordered = orders_.latestWake();
    if (!ordered || ordered == latest_) return;
    latest_ = ordered;
    woke_();
  }

  const SimulatedOrders& orders_;
  const std::function<void()> woke_;
  std::optional<std::int64_t> latest_;
  ScheduledWork machinesToken_;
  ScheduledWork ordersToken_;
};

}  // namespace

ScheduledWork SimulatedSystemWake::follow(std::function<void()> woke) {
  const auto follower = std::make_shared<Follower>(orders_, std::move(woke));
  follower->start(machines_, watch_);
  return follower;
}

}  // namespace ostrel
