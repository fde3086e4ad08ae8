#include "Benchmarks/AgentBenchmark.hpp"

#include <algorithm>
#include <fstream>
#include <thread>
#include <vector>

#include "Benchmarks/BenchTable.hpp"
#include "Benchmarks/ContainerBenchmark.hpp"
#include "Benchmarks/Process.hpp"
#include "OstrelAgent/MenuBar/MenuBarController.hpp"
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
    return {median(refreshes_), switches / count, process_.residentKiB()};
  }

 private:
  const Process& process_;
  std::chrono::nanoseconds cpuTime_;
  std::uint64_t firstSwitches_;
  std::vector<double> refreshes_;
};

}  // namespace

AgentFigures measureAgent(int refreshes, HostRootFolder::Reports reports) {
  const HostRootFolder hostRoot(reports);
  const auto& root = hostRoot.path();
  std::ofstream(root + simulatedstate::applications) << usualApplications();
  const auto period = MenuBarController::refreshPeriod;
  const Process agent({OSTREL_AGENT, "menubar"});
  const Process bareLoop({OSTREL_BARE_LOOP, std::to_string(period.count()), OSTREL_HELPER,
                          root + simulatedstate::transparentProxies, root + simulatedstate::contentFilter});
  // Starts midway between two refreshes, so that each sample covers one refresh of both programs.
  std::this_thread::sleep_for(period + period / 2);
  Watch agentWatch(agent);
  Watch bareWatch(bareLoop);
  for (int i = 0; i < refreshes; ++i) {
    std::this_thread::sleep_for(period);
    agentWatch.sample();
    bareWatch.sample();
  }
  return {agentWatch.figures(), bareWatch.figures()};
}

double activationMilliseconds(int rounds) {
  const HostRootFolder hostRoot;
  medianRunMicroseconds({OSTREL_SIMULATED_ENDPOINT, "install"}, 1);
  medianRunMicroseconds({OSTREL_SIMULATED_ENDPOINT, "approval", "never"}, 1);
  return medianRunCpuMilliseconds({OSTREL_AGENT, "activate"}, rounds);
}

}  // namespace ostrel
