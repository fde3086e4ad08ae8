// Prints the table of docs/PERFORMANCE.md: ostrel-bench [--quick]

#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "Benchmarks/AgentBenchmark.hpp"
#include "Benchmarks/BenchTable.hpp"
#include "Benchmarks/ContainerBenchmark.hpp"
#include "Benchmarks/GateBenchmark.hpp"
#include "Benchmarks/NudgeBenchmark.hpp"
#include "Benchmarks/Process.hpp"
#include "Benchmarks/ReportBenchmark.hpp"
#include "Benchmarks/SocketBenchmark.hpp"

namespace ostrel {

namespace {

constexpr int refreshes = 36;
constexpr int quickRefreshes = 4;
constexpr int starts = 400;
constexpr int exchanges = 4000;
constexpr int activations = 21;
constexpr int pathChanges = 1000;
constexpr int readings = 100000;

void run(bool isQuick) {
  std::printf("| what | measured | reference | ratio | bar |\n|---|---|---|---|---|\n");
  const auto report = measureReport(readReport());
  compare("report of 16 KB to panel content; reference: the JSON library's DOM parse", "µs",
          report.panelMicroseconds, report.domMicroseconds, "2 times");
  const auto help = medianRunMicroseconds({OSTREL_AGENT, "help"}, starts);
  const auto trueTime = medianRunMicroseconds({"/bin/true"}, starts);
  compare("`OstrelAgent help`; reference: `/bin/true`", "µs", help, trueTime, "3 times");
  const auto socket = measureSocket(exchanges);
  compare("request of 1 KB and its answer; reference: a bare connect, write, read, close", "µs",
          socket.controlSocketMicroseconds, socket.bareMicroseconds, "2 times");
  printRow("CPU of `activate` that finds everything approved, its children with it",
           formatted("%.1f ms", activationMilliseconds(activations)), "", "", "50 ms");
  const auto nudges = measureNudges(pathChanges);
  printRow("CPU of a burst of 1,000 changes of the network, median of 21",
           formatted("%.2f ms", nudges.milliseconds), "", "", "5 ms");
  printRow("check-ins that it leads to", std::to_string(nudges.checkIns), "", "", "1");
  const auto gates = measureGates(readings);
  printRow("readings that the gate of the red notification takes, median of 21",
           formatted("%.1f M/s", gates.redReadings / 1e6), "", "", "1 M/s");
  printRow("readings that the gate of the container notification takes, median of 21",
           formatted("%.1f M/s", gates.containerReadings / 1e6), "", "", "1 M/s");
  const auto containers = measureContainers();
  printRow("container runtimes detected among 200 applications and 2,000 processes, median of 101",
           formatted("%.2f ms", containers.detection / 1e3), "", "", "0.3 ms");
  printRow("trust reading and page of all fifteen container runtimes, median of 101",
           formatted("%.2f ms", containers.page / 1e3), "", "", "0.2 ms");
  const int rounds = isQuick ? quickRefreshes : refreshes;
  const auto agent = measureAgent(rounds, HostRootFolder::Reports::equal);
  compare("CPU of one refresh with an unchanged report, median; reference: a bare loop", "µs",
          agent.agent.refreshMicroseconds, agent.bareLoop.refreshMicroseconds, "2 times");
  const auto changing = measureAgent(rounds, HostRootFolder::Reports::changing);
  compare("CPU of one refresh with a changed report, median; reference: a bare loop", "µs",
          changing.agent.refreshMicroseconds, changing.bareLoop.refreshMicroseconds, "2.6 times");
  compare("CPU of a reading of the running container runtimes, median; reference: the refresh above", "µs",
          containers.reading, changing.agent.refreshMicroseconds, "0.1 times");
  compare("context switches of one refresh; reference: a bare loop", "", agent.agent.contextSwitches,
          agent.bareLoop.contextSwitches, "2.5 times");
  printRow("resident memory of the idle console agent",
           formatted("%.1f MiB", static_cast<double>(agent.agent.residentKiB) / 1024),
           formatted("%.1f MiB", static_cast<double>(agent.bareLoop.residentKiB) / 1024), "", "9 MiB");
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  try {
    ostrel::run(count > 1 && std::string_view(arguments[1]) == "--quick");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ostrel-bench: %s\n", error.what());
    return 1;
  }
}
