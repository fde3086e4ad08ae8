#include "Benchmarks/BenchTable.hpp"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>

namespace ostrel {

void printRow(const char* what, const std::string& measured, const std::string& reference,
              const std::string& ratio, const char* bar) {
  std::printf("| %s | %s | %s | %s | %s |\n", what, measured.c_str(), reference.c_str(), ratio.c_str(), bar);
  std::fflush(stdout);
}

void compare(const char* what, const char* unit, double measured, double reference, const char* bar) {
  const auto format = std::string("%.1f ") + unit;
  printRow(what, formatted(format.c_str(), measured), formatted(format.c_str(), reference),
           formatted("%.2f", measured / reference), bar);
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

std::string formatted(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

double cpuSeconds() {
  timespec time{};
  (void)::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::string readReport() {
  std::ifstream file(OSTREL_REPORT, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace ostrel
