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

/// One run of this program's own activation as a child, told as the states it goes through. Main thread. Its
/// end asks the child to end, too, and nothing more is told.
class ActivationRun {
 public:
  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    ChildProcesses& childProcesses;
  };

  struct Events {
    std::function<void(ActivationState)> progressed;
    std::function<void(ActivationState)> ended;  ///< idle when all went well, else failed; may end the run
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
