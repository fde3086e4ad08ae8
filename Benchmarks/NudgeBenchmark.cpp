#include "Benchmarks/NudgeBenchmark.hpp"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Benchmarks/BenchTable.hpp"
#include "OstrelAgent/MenuBar/CheckInNudges.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Tests/Fakes/FakeMainQueue.hpp"
#include "Tests/Fakes/FakeNetworkPath.hpp"
#include "Tests/Fakes/FakeSystemWake.hpp"

namespace ostrel {

namespace {

constexpr int bursts = 21;

/// Check-in nudges of an enrolled Mac whose network keeps changing.
class MovingMac {
 public:
  MovingMac(MainQueue& queue, Clock& clock)
      : nudges_({queue, clock, path_, wake_}, [this](const std::string&) { ++checkIns_; }) {
    nudges_.setEnrolled(true);
    nudges_.start();
    path_.update(true, {"en0"});
  }

  void move(int pathChanges) const {
    for (int i = 0; i < pathChanges; ++i) path_.update(true, {i % 2 == 0 ? "en1" : "en0"});
  }

  int checkIns() const { return checkIns_; }

 private:
  FakeNetworkPath path_;
  FakeSystemWake wake_;
  int checkIns_ = 0;
  CheckInNudges nudges_;
};

}  // namespace

NudgeFigures measureNudges(int pathChanges) {
  FakeClock clock;
  std::vector<double> times;
  for (int burst = 0; burst < bursts; ++burst) {
    PosixMainQueue queue;
    const MovingMac mac(queue, clock);
    const auto start = cpuSeconds();
    mac.move(pathChanges);
    times.push_back(1e3 * (cpuSeconds() - start));
  }
  FakeMainQueue turned(clock);
  const MovingMac mac(turned, clock);
  mac.move(pathChanges);
  turned.advance(std::chrono::minutes(10));
  return {median(std::move(times)), mac.checkIns()};
}

}  // namespace ostrel
