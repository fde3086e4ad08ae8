#include "Platform/SimulatedMac/SimulatedNetworkPath.hpp"

#include <memory>
#include <optional>

namespace ostrel {

namespace {

/// Reports the path when it differs from the previous one. The first report follows the machine's own first
/// path.
class Follower {
 public:
  Follower(const SimulatedOverrides& overrides, std::function<void(const NetworkPathUpdate&)> updated)
      : overrides_(overrides), updated_(std::move(updated)) {}

  void start(NetworkPath& machines, const OverridesWatch& watch) {
    machinesToken_ = machines.observe([this](const NetworkPathUpdate& path) {
      machinesPath_ = path;
      report();
    });
    overridesToken_ = watch([this] {
      if (machinesPath_) report();
    });
  }

 private:
  void report() {
    auto path = overrides_.networkPath().value_or(*machinesPath_);
    if (path == reported_) return;
    reported_ = std::move(path);
    updated_(*reported_);
  }

  const SimulatedOverrides& overrides_;
  const std::function<void(const NetworkPathUpdate&)> updated_;
  std::optional<NetworkPathUpdate> machinesPath_;
  std::optional<NetworkPathUpdate> reported_;
  ScheduledWork machinesToken_;
  ScheduledWork overridesToken_;
};

}  // namespace

ScheduledWork SimulatedNetworkPath::observe(std::function<void(const NetworkPathUpdate&)> updated) {
  const auto follower = std::make_shared<Follower>(overrides_, std::move(updated));
  follower->start(machines_, watch_);
  return follower;
}

}  // namespace ostrel
