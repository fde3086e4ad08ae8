#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "Platform/SimulatedMac/SystemExtensionFile.hpp"
#include "Platform/SystemExtensions.hpp"

namespace ostrel {

/// The system extension in the file of `simulatedstate`. A request that waits for approval polls the file
/// until it is carried out or withdrawn.
class SimulatedSystemExtensions final : public SystemExtensions {
 public:
  /// Takes the real path of the lock file.
  SimulatedSystemExtensions(Files& files, MainQueue& mainQueue, const std::string& lockPath);

  void submit(SystemExtensionAction action, const std::string& identifier,
              std::weak_ptr<SystemExtensionDelegate> delegate) override;

 private:
  struct Request {
    SystemExtensionAction action;
    std::weak_ptr<SystemExtensionDelegate> delegate;
    SystemExtensionState before = {};
    ScheduledWork look = {};
  };
  using Requests = std::list<Request>;

  void begin(const Request& request);
  bool isReplacementCancelled(const Request& request) const;
  void take(Request request);
  void wait(const Request& request);
  /// True when the wait is over.
  bool isDecided(const Request& request);

  SystemExtensionState read() const;
  [[nodiscard]] bool write(const SystemExtensionState& state);

  void finish(const Request& request);
  void fail(const Request& request, const PlatformError& error);
  /// Calls the delegate, twice when an override says so.
  void callDelegate(const Request& request, const std::function<void(SystemExtensionDelegate&)>& call);

  Files& files_;
  MainQueue& mainQueue_;
  const std::string lockPath_;
  SimulatedOverrides overrides_;
  Requests waiting_;
};

}  // namespace ostrel
