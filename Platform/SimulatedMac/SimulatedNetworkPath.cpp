#include "Platform/SimulatedMac/SimulatedNetworkPath.hpp"

#include <memory>
#include <optional>

namespace ostrel {

namespace {

/// Tells the path when it is another than the one before. The machine's own comes soon in any case, and with
/// it the first one.
class Follower {
 public:
  Follower(const SimulatedOverrides& overrides, std::function<void(const NetworkPathUpdate&)> updated)
      : overrides_(overrides), updated_(std::move(updated)) {}

  void start(NetworkPath& machines, const OverridesWatch& watch) {
    machinesToken_ = machines.observe([this](const NetworkPathUpdate& path) {
      machinesPath_ = path;
      tell();
    });
    ordersToken_ = watch([this] {
      if (machinesPath_) tell();
    });
  }

 private:
  void tell() {
    auto path = overrides_.networkPath().value_or(*machinesPath_);
    if (path == told_) return;
    told_ = std::move(path);
    updated_(*told_);
  }

  const SimulatedOverrides& overrides_;
  const std::function<void(const NetworkPathUpdate&)> updated_;
  std::optional<NetworkPathUpdate> machinesPath_;
  std::optional<NetworkPathUpdate> told_;
  ScheduledWork machinesToken_;
  ScheduledWork ordersToken_;
};

}  // namespace

ScheduledWork SimulatedNetworkPath::observe(std::function<void(const NetworkPathUpdate&)> updated) {
  const auto follower = std::make_shared<Follower>(overrides_, std::move(updated));
  follower->start(machines_, watch_);
  return follower;
}

}  // namespace ostrel
