#pragma once

#include "Platform/Files.hpp"
#include "Platform/NetworkPath.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"

namespace ostrel {

/// The network path from the default routes. The kernel's messages (rtnetlink(7)) only trigger reading the
/// routes again, so a lost message does no harm.
class LinuxNetworkPath final : public NetworkPath {
 public:
  /// The routing tables are given by real paths.
  LinuxNetworkPath(PosixMainQueue& mainQueue, const Files& files) : mainQueue_(mainQueue), files_(files) {}

  /// Without change messages from the kernel only the first path is reported.
  [[nodiscard]] ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) override;

 private:
  PosixMainQueue& mainQueue_;
  const Files& files_;
};

}  // namespace ostrel
