#include "OstrelAgent/Panel/PanelHeader.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Status/HealthComponents.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Case = Settling::Case;

/// An amber component: whether it heals itself, and when from now.
Snapshot::ComponentHealth amber(bool selfHealing, std::optional<std::chrono::milliseconds> clears) {
  auto health = builders::health("broken", "yellow");
  health.selfHealing = selfHealing;
  if (clears) health.expectedClearBy = builders::now + *clears;
  return health;
}

PanelHeaderReading read(const Snapshot& snapshot, std::string_view wire = "degraded") {
  return PanelHeaderReading::read(ProtectionVerdict::fromWire(wire, 0), snapshot, builders::now,
                                  builders::times());
}

TEST(PanelHeader, SettlesOnlyWhenEveryAmberComponentClearsByItselfInTime) {
  struct Row {
    Snapshot::ComponentHealth daemon;
    Snapshot::ComponentHealth egressLock;
    Settling settling;
  };
  const auto red = builders::health("broken", "red");
  const Row rows[] = {
      {red, red, {Case::notApplicable, {}}},
      {amber(true, 5min), amber(true, 20min), {Case::settling, builders::now + 20min}},
      {amber(true, 20min), amber(true, 5min), {Case::settling, builders::now + 20min}},
      {amber(true, 1ms), red, {Case::settling, builders::now + 1ms}},
      {red, amber(true, 0ms), {Case::overdue, {}}},
      {amber(true, -1min), amber(true, {}), {Case::overdue, {}}},
      {amber(true, {}), amber(true, -1min), {Case::undated, {}}},
      {amber(true, {}), amber(false, 5min), {Case::needsAction, {}}},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(i);
    auto snapshot = builders::healthy();
    snapshot.daemon = rows[i].daemon;
    snapshot.egressLock = rows[i].egressLock;
    const auto reading = read(snapshot);
    EXPECT_EQ(reading.settling, rows[i].settling);
    EXPECT_EQ(reading.word, rows[i].settling.date ? "Settling" : "Needs attention");
    EXPECT_EQ(reading.deadlineLine.has_value(), rows[i].settling.date.has_value());
    EXPECT_EQ(read(snapshot, "not_protected"), (PanelHeaderReading{{}, "Not protected", {}}));
  }
}

TEST(PanelHeader, NamesTheTimeByWhichAnyComponentClears) {
  for (const auto& component : healthComponents) {
    auto snapshot = builders::healthy();
    snapshot.*component.health = amber(true, 20min);
    EXPECT_EQ(read(snapshot).deadlineLine, "Usually back to full protection by 10:20 AM.");
  }
}

}  // namespace
}  // namespace ostrel
