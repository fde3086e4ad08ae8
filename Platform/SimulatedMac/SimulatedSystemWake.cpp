#include "Platform/SimulatedMac/SimulatedSystemWake.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace ostrel {

namespace {

class Follower {
 public:
  Follower(const SimulatedOverrides& overrides, std::function<void()> woke)
      : overrides_(overrides), woke_(std::move(woke)) {}

  void start(SystemWake& machines, const OverridesWatch& watch) {
    machinesToken_ = machines.observe(woke_);
    ordersToken_ = watch([this] { ordersChanged(); });
    latest_ = overrides_.latestWake();
  }

 private:
  void ordersChanged() {
    const auto ordered = overrides_.latestWake();
    if (!ordered || ordered == latest_) return;
    latest_ = ordered;
    woke_();
  }

  const SimulatedOverrides& overrides_;
  const std::function<void()> woke_;
  std::optional<std::int64_t> latest_;
  ScheduledWork machinesToken_;
  ScheduledWork ordersToken_;
};

}  // namespace

ScheduledWork SimulatedSystemWake::observe(std::function<void()> woke) {
  const auto follower = std::make_shared<Follower>(overrides_, std::move(woke));
  follower->start(machines_, watch_);
  return follower;
}

}  // namespace ostrel
