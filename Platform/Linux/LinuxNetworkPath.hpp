#pragma once

#include "Platform/Files.hpp"
#include "Platform/NetworkPath.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"

namespace ostrel {

/// The network by its default routes. The kernel's messages (rtnetlink(7)) only tell that something changed:
/// each time the routes are read anew, so that none that is lost does harm.
class LinuxNetworkPath final : public NetworkPath {
 public:
  /// The files are told real paths.
  LinuxNetworkPath(PosixMainQueue& mainQueue, const Files& files) : mainQueue_(mainQueue), files_(files) {}

  /// Where the kernel tells no changes the first path stays the last.
  [[nodiscard]] ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) override;

 private:
  PosixMainQueue& mainQueue_;
  const Files& files_;
};

}  // namespace ostrel
