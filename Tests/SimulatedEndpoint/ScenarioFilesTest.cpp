#include <gtest/gtest.h>

#include <array>

#include "OstrelAgent/Panel/PanelHeader.hpp"
#include "OstrelAgent/Status/HealthComponents.hpp"
#include "OstrelAgent/Status/Verdict.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/HelperAnswers.hpp"
#include "SimulatedEndpoint/ScenarioFolder.hpp"

namespace ostrel::simulated {
namespace {

const std::chrono::sys_seconds now(std::chrono::seconds(1'760'000'000));

/// The scenario files that are shipped with the control program.
struct Shipped {
  PosixFiles files{[](std::string_view path) { return std::string(path); }};
  ScenarioFolder folder{files, SCENARIO_FOLDER};

  Snapshot snapshot(const std::string& name) const {
    const auto scenario = folder.load(name);
    const auto report = StatusReport::decode(statusAnswer(scenario.value(), HelperBehaviour(), now));
    Snapshot snapshot;
    snapshot.fill(report.value());
    return snapshot;
  }
};

TEST(ScenarioFiles, AreValidAndGiveEveryCodeATextAndEveryFaultACode) {
  const Shipped shipped;
  const auto names = shipped.folder.names();
  ASSERT_GE(names.size(), 29U);
  for (const auto& name : names) {
    SCOPED_TRACE(name);
    EXPECT_EQ(shipped.folder.load(name).value().name(), name);
    const auto snap = shipped.snapshot(name);
    for (const auto& component : healthComponents) {
      const auto* health = &(snap.*component.health);
      const bool isExplained = !health->code.empty() && !health->severity.empty();
      EXPECT_TRUE(isExplained || health->state != "broken") << health->code;
      if (health->code.empty()) continue;
      const auto text = Copy::componentDetail(health->code, health->detail, health->params);
      EXPECT_FALSE(text.empty()) << health->code;
      EXPECT_EQ(text.find("does not recognize"), std::string::npos) << text;
      EXPECT_EQ(Copy::relaysWireDetail(health->code), !health->detail.empty()) << health->code;
    }
  }
}

TEST(ScenarioFiles, ReachTheVerdictOfTheirDescription) {
  using Case = ProtectionVerdict::Case;
  constexpr std::array<std::pair<std::string_view, Case>, 3> words = {
      {{"Protected", Case::isProtected},
       {"Degraded", Case::needsAttention},
       {"Not protected", Case::notProtected}}};
  const Shipped shipped;
  for (const auto& name : shipped.folder.names()) {
    const auto description = shipped.folder.load(name)->description();
    for (const auto& [word, kind] : words) {
      if (!description.starts_with(word)) continue;
      const auto verdict = ProtectionVerdict::of(shipped.snapshot(name));
      EXPECT_EQ(verdict.kind, verdict.count > 0 ? Case::protectedWithOff : kind) << name;
    }
  }
  EXPECT_EQ(ProtectionVerdict::of(shipped.snapshot("protected-2-off")).count, 2);
}

TEST(ScenarioFiles, SettleOrAreOverdueAsTheirNamesSay) {
  using Case = Settling::Case;
  constexpr std::array<std::pair<const char*, Case>, 4> rows = {{{"settling", Case::settling},
                                                                 {"overdue", Case::overdue},
                                                                 {"container-blocked", Case::settling},
                                                                 {"credential-degraded", Case::needsAction}}};
  const Shipped shipped;
  for (const auto& [name, kind] : rows) {
    const auto snapshot = shipped.snapshot(name);
    EXPECT_EQ(Settling::read(ProtectionVerdict::of(snapshot), snapshot, now).kind, kind) << name;
  }
}

}  // namespace
}  // namespace ostrel::simulated
