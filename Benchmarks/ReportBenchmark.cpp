#include "Benchmarks/ReportBenchmark.hpp"

#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>
#include <string_view>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "OstrelAgent/Status/Verdict.hpp"
#include "Platform/Posix/PosixTimeFormat.hpp"

namespace ostrel {

namespace {

void parseDom(benchmark::State& state, const std::string& report) {
  for (auto _ : state) benchmark::DoNotOptimize(nlohmann::json::parse(report));
}

void composePanel(benchmark::State& state, const std::string& report) {
  const PosixTimeFormat format("en");
  const TimeTexts times{.clockTime = [&](Date date) { return format.clockTime(date); },
                        .shortDate = [&](Date date) { return format.shortDate(date); }};
  const auto now = Date(std::chrono::sys_days(std::chrono::January / 2 / 2025)) + std::chrono::hours(10);
  const PanelActionSet actions = {PanelAction::checkNow, PanelAction::installUpdate,
                                  PanelAction::openRepairFlow, PanelAction::trustDeviceCA,
                                  PanelAction::quitStatusIcon};
  StatusInputs inputs = {.transparentProxies = std::vector{TransparentProxyConfiguration{true, true}},
                         .contentFilter = ContentFilterConfiguration{true, true}};
  StatusPanelModel model;
  model.hasReading = true;
  for (auto _ : state) {
    inputs.helper = readHelper({0, report}, nullptr);
    model.snap = statusSnapshot(inputs);
    if (model.snap.statusError) return state.SkipWithError("the report does not decode");
    benchmark::DoNotOptimize(ProtectionVerdict::of(model.snap));
    benchmark::DoNotOptimize(panelContent(model, now, times, actions));
  }
}

/// Keeps the medians and prints nothing.
class MedianReporter final : public benchmark::BenchmarkReporter {
 public:
  explicit MedianReporter(ReportFigures& figures) : figures_(figures) {}

  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      if (run.aggregate_name != "median") continue;
      const bool isDom = run.benchmark_name().starts_with("dom");
      (isDom ? figures_.domMicroseconds : figures_.panelMicroseconds) = run.GetAdjustedCPUTime();
    }
  }

 private:
  ReportFigures& figures_;
};

}  // namespace

ReportFigures measureReport(const std::string& report) {
  for (const auto& [name, function] : {std::pair{"dom", &parseDom}, std::pair{"panel", &composePanel}}) {
    benchmark::RegisterBenchmark(name, function, report)
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
  }
  ReportFigures figures;
  MedianReporter reporter(figures);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::ClearRegisteredBenchmarks();
  return figures;
}

}  // namespace ostrel
