#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Looks for container runtimes in the background, one reading at a time; requests during a reading start no
/// other. Main thread; background work holds it weakly.
class ContainerReader : public std::enable_shared_from_this<ContainerReader> {
 public:
  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
  };

  ContainerReader(Services services, ContainerDetector::Services detectorServices);

  /// Sets the receiver of readings that differ from the one before. Call once, before the first request.
  void start(std::function<void(const ContainerFindings&)> published) { published_ = std::move(published); }

  enum class Scope {
    running,  ///< the running runtimes
    all,      ///< the installation, too
    allAnew,  ///< the same, published even when nothing has changed
  };

  /// Reads in the background.
  void request(Scope scope);

  /// The work of a reading, to be run on a background thread; empty while one is under way, which then serves
  /// this scope.
  std::function<void()> begin(Scope scope);

 private:
  /// What a reading looks for and does, as bits of `wanted`.
  using Wanted = unsigned;
  static constexpr Wanted running = 1;
  static constexpr Wanted installation = 2;
  static constexpr Wanted publishing = 4;

  /// The state of the background work, which may outlive the reader.
  struct Work {
    explicit Work(ContainerDetector::Services services) : detector(services) {}

    std::atomic<Wanted> wanted = 0;  ///< 0 while no reading is under way
    ContainerDetector detector;      ///< of the reading under way, as is `latest`
    std::optional<ContainerFindings> latest = std::nullopt;
  };

  static Wanted wantedBy(Scope scope);
  static std::optional<ContainerFindings> read(Work& work, Wanted wanted);

  Services services_;
  std::shared_ptr<Work> work_;
  std::function<void(const ContainerFindings&)> published_;
};

}  // namespace ostrel
