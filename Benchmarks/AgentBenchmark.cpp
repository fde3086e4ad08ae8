#include "Benchmarks/AgentBenchmark.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include "Benchmarks/Process.hpp"
#include "OstrelAgent/MenuBarController.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel {

namespace {

/// Samples a process between its refreshes.
class Watch {
 public:
  explicit Watch(const Process& process)
      : process_(process), cpuTime_(process.cpuTime()), firstSwitches_(process.contextSwitches()) {}

  void sample() {
    const auto now = process_.cpuTime();
    refreshes_.push_back(std::chrono::duration<double, std::micro>(now - cpuTime_).count());
    cpuTime_ = now;
  }

  PollerFigures figures() {
    const auto switches = static_cast<double>(process_.contextSwitches() - firstSwitches_);
    const auto count = static_cast<double>(refreshes_.size());
    std::ranges::sort(refreshes_);
    return {refreshes_[refreshes_.size() / 2], switches / count, process_.residentKiB()};
  }

 private:
  const Process& process_;
  std::chrono::nanoseconds cpuTime_;
  std::uint64_t firstSwitches_;
  std::vector<double> refreshes_;
};

std::string makeHostRoot() {
  std::string root = "/tmp/ostrel-bench-XXXXXX";
  if (::mkdtemp(root.data()) == nullptr) std::abort();
  ::setenv("OSTREL_HOST_ROOT", root.c_str(), 1);
  medianRunMicroseconds({OSTREL_SIMULATED_ENDPOINT, "scenario", "protected"}, 1);
  return root;
}

}  // namespace

AgentFigures measureAgent(int refreshes) {
  const auto root = makeHostRoot();
  const auto period = MenuBarController::refreshPeriod;
  const Process agent({OSTREL_AGENT, "menubar"});
  const Process bareLoop({OSTREL_BARE_LOOP, std::to_string(period.count()), OSTREL_HELPER,
                          root + simulatedstate::transparentProxies, root + simulatedstate::contentFilter});
  // From the middle between two refreshes on, each sample covers one refresh of both.
  std::this_thread::sleep_for(period + period / 2);
  Watch agentWatch(agent);
  Watch bareWatch(bareLoop);
  for (int i = 0; i < refreshes; ++i) {
    std::this_thread::sleep_for(period);
    agentWatch.sample();
    bareWatch.sample();
  }
  const AgentFigures figures{agentWatch.figures(), bareWatch.figures()};
  std::filesystem::remove_all(root);
  return figures;
}

}  // namespace ostrel
