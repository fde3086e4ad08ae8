#include "Platform/SimulatedMac/SimulatedApplications.hpp"

#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel {

std::shared_ptr<const ApplicationsState> SimulatedApplications::current() const {
  const std::lock_guard lock(mutex_);
  // The stamp is taken first: if the file is replaced before it is read, the next call reads it again.
  const auto stamp = files_.stamp(simulatedstate::applications);
  if (stamp && latest_ && latest_->stamp == *stamp) return latest_->state;
  latest_.reset();
  const auto bytes = files_.read(simulatedstate::applications);
  auto state =
      std::make_shared<const ApplicationsState>(bytes ? applicationsOfFile(*bytes) : ApplicationsState());
  if (stamp && bytes) latest_ = Reading{.stamp = *stamp, .state = state};
  return state;
}

}  // namespace ostrel
