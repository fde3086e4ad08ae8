#pragma once

#include <functional>
#include <memory>
#include <stop_token>
#include <string>

#include "OstrelAgent/Onboarding/ActivationState.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Runs this program's "activate" as a child process and reports its states. Main thread. The destructor
/// terminates the child and no callback follows.
class ActivationRun {
 public:
  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    ChildProcesses& childProcesses;
  };

  struct Events {
    std::function<void(ActivationState)> progressed;
    std::function<void(ActivationState)> ended;  ///< idle on success, else failed; may destroy the run
  };

  ActivationRun(Services services, const std::string& executable, Events events);
  ActivationRun(const ActivationRun&) = delete;
  ActivationRun& operator=(const ActivationRun&) = delete;
  ~ActivationRun() { terminate_.request_stop(); }

 private:
  std::shared_ptr<const Events> events_;
  std::stop_source terminate_;
};

}  // namespace ostrel
