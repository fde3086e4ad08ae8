#include "Benchmarks/GateBenchmark.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "Benchmarks/BenchTable.hpp"
#include "OstrelAgent/Notifications/ContainerBlockNotificationGate.hpp"
#include "OstrelAgent/Notifications/RedNotificationGate.hpp"

namespace ostrel {

namespace {

using namespace std::chrono_literals;

constexpr int runs = 21;
constexpr std::chrono::milliseconds rhythm = 5s;  // between two readings

double medianRate(int readings, void (*read)(int)) {
  std::vector<double> rates;
  for (int run = 0; run < runs; ++run) {
    const auto start = cpuSeconds();
    read(readings);
    rates.push_back(readings / (cpuSeconds() - start));
  }
  std::ranges::nth_element(rates, rates.begin() + runs / 2);
  return rates[runs / 2];
}

/// Three readings of ten are protected, so that spans open and close all the time.
void readVerdicts(int readings) {
  using Case = ProtectionVerdict::Case;
  RedNotificationGate::Outcome last;
  Date now{};
  for (int reading = 0; reading < readings; ++reading) {
    const ProtectionVerdict verdict{.kind = reading % 10 < 3 ? Case::isProtected : Case::notProtected};
    last = RedNotificationGate::evaluate(verdict, last.lastPostedAt, std::move(last.closed), last.open,
                                         now += rhythm);
    benchmark::DoNotOptimize(last);
  }
}

void readBlocks(int readings) {
  const std::vector<std::string> blocked{"Colima", "Lima", "Podman"};
  const std::set<std::string> enabled{"Colima", "Podman"};
  ContainerBlockNotificationGate::Outcome last;
  Date now{};
  for (int reading = 0; reading < readings; ++reading) {
    last = ContainerBlockNotificationGate::evaluate(blocked, enabled, std::move(last.lastPostedAt),
                                                    now += rhythm);
    benchmark::DoNotOptimize(last);
  }
}

}  // namespace

GateFigures measureGates(int readings) {
  return {medianRate(readings, &readVerdicts), medianRate(readings, &readBlocks)};
}

}  // namespace ostrel
