#include "Tests/Soak/RealSoak.hpp"

#include <csignal>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

namespace {

constexpr int refreshesToACheckIn = 25;
constexpr int looksAtRest = 20;

void control(std::vector<std::string> words, const Process::Environment& environment) {
  words.insert(words.begin(), CONTROL);
  const auto ran = run(words, environment);
  if (ran.status != 0) throw std::runtime_error(ran.error);
}

/// That of a simulated Mac which is protected.
Process::Environment environmentOf(const std::string& hostRoot) {
  Process::Environment environment{{"HOME", "/Users/robin"}, {"OSTREL_HOST_ROOT", hostRoot}};
  control({"scenario", "protected"}, environment);
  return environment;
}

/// The agent over a host root of its own, with a daemon.
class RealAgent {
 public:
  RealAgent() {
    daemon_.awaitOutput("Serving at");
    agent_.awaitOutput("Ostrel Agent: protected\n");
  }

  ~RealAgent() {
    for (auto* process : {&agent_, &daemon_}) {
      process->signal(SIGTERM);
      (void)process->end();
    }
  }

  pid_t number() const { return agent_.number(); }

  /// More requests than there are places, so that every thread there can be has been started.
  void fillPlaces() {
    for (int request = 0; request < 12; ++request) agent_.write("close\npanel\n");
  }

  /// Waits until the panel shows the next report of the endpoint.
  void refresh() {
    const auto version = "4.12." + std::to_string(++version_);
    control({"set", "report.version", version}, environment_);
    agent_.write("close\npanel\n");
    agent_.awaitOutput("  " + version + "\n");
  }

  void checkIn() {
    agent_.write("press 1\n");
    agent_.awaitOutput("Checked in");
  }

  /// The agent is idle once a number of looks have found no child and the same descriptors.
  void comeToRest() const {
    std::size_t descriptors = 0;
    int equalLooks = 0;
    const bool isAtRest = becomesTrue([&] {
      const auto figures = SoakFigures::of(agent_.number());
      const bool isSame = figures.children == 0 && figures.descriptors == descriptors;
      descriptors = figures.descriptors;
      equalLooks = isSame ? equalLooks + 1 : 0;
      return equalLooks == looksAtRest;
    });
    if (!isAtRest) throw std::runtime_error("the agent does not come to rest");
  }

 private:
  TemporaryFolder place_;
  const Process::Environment environment_ = environmentOf(place_ / "root");
  Process daemon_{{CONTROL, "serve"}, environment_};
  Process agent_{{AGENT, "menubar"}, environment_};
  int version_ = 0;
};

}  // namespace

SoakRun soakRealAgent(int refreshes) {
  RealAgent agent;
  agent.fillPlaces();
  SoakClock clock(agent.number(), refreshes);
  for (int done = 1; done <= refreshes; ++done) {
    agent.refresh();
    if (done % refreshesToACheckIn == 0) agent.checkIn();
    if (done < clock.nextRefreshes()) continue;
    agent.comeToRest();
    clock.take();
  }
  return clock.run();
}

}  // namespace ostrel
