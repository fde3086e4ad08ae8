#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/ApplicationsFile.hpp"

namespace ostrel {

/// The applications and processes in the file `simulatedstate::applications`, which is read again only when
/// its stamp has changed. Any thread; calls block.
class SimulatedApplications {
 public:
  explicit SimulatedApplications(const Files& files) : files_(files) {}

  /// The current state, empty when the file is missing or cannot be read; never null.
  std::shared_ptr<const ApplicationsState> current() const;

 private:
  struct Reading {
    FileStamp stamp;
    std::shared_ptr<const ApplicationsState> state;
  };

  const Files& files_;
  mutable std::mutex mutex_;  // guards the member below
  mutable std::optional<Reading> latest_;
};

}  // namespace ostrel
