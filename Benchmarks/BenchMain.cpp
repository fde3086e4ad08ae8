// Prints the table of docs/PERFORMANCE.md: ostrel-bench [--quick]

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "Benchmarks/AgentBenchmark.hpp"
#include "Benchmarks/Process.hpp"
#include "Benchmarks/ReportBenchmark.hpp"

namespace ostrel {

namespace {

constexpr int refreshes = 36;
constexpr int quickRefreshes = 4;
constexpr int starts = 400;

void row(const char* what, const std::string& measured, const std::string& reference,
         const std::string& ratio, const char* bar) {
  std::printf("| %s | %s | %s | %s | %s |\n", what, measured.c_str(), reference.c_str(), ratio.c_str(), bar);
  std::fflush(stdout);
}

std::string text(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

void compare(const char* what, const char* unit, double measured, double reference, const char* bar) {
  const auto format = std::string("%.1f ") + unit;
  row(what, text(format.c_str(), measured), text(format.c_str(), reference),
      text("%.2f", measured / reference), bar);
}

std::string readReport() {
  std::ifstream file(OSTREL_REPORT, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void run(bool isQuick) {
  std::printf("| what | measured | reference | ratio | bar |\n|---|---|---|---|---|\n");
  const auto report = measureReport(readReport());
  compare("report of 16 KB to panel content; reference: the JSON library's DOM parse", "µs",
          report.panelMicroseconds, report.domMicroseconds, "1.5 times");
  const auto help = medianRunMicroseconds({OSTREL_AGENT, "help"}, starts);
  const auto trueTime = medianRunMicroseconds({"/bin/true"}, starts);
  compare("`OstrelAgent help`; reference: `/bin/true`", "µs", help, trueTime, "3 times");
  const auto agent = measureAgent(isQuick ? quickRefreshes : refreshes);
  compare("CPU of one refresh, median; reference: a bare loop", "µs", agent.agent.refreshMicroseconds,
          agent.bareLoop.refreshMicroseconds, "1.5 times");
  compare("context switches of one refresh; reference: a bare loop", "", agent.agent.contextSwitches,
          agent.bareLoop.contextSwitches, "2.5 times");
  row("resident memory of the idle console agent",
      text("%.1f MiB", static_cast<double>(agent.agent.residentKiB) / 1024),
      text("%.1f MiB", static_cast<double>(agent.bareLoop.residentKiB) / 1024), "", "9 MiB");
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
