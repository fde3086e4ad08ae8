#include "OstrelAgent/Panel/PanelContent.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using builders::healthy;
using Texts = std::vector<std::string>;

StatusPanelModel read(Snapshot snapshot) {
  StatusPanelModel model;
  model.snap = std::move(snapshot);
  model.hasReading = true;
  return model;
}

PanelContent content(const StatusPanelModel& model, const PanelActionSet& available = allPanelActions()) {
  return panelContent(model, builders::now, builders::times(), available);
}

/// Titles of the buttons, "!" before those that cannot be pressed.
std::string titles(const PanelContent& content) {
  std::string titles;
  for (const auto& button : content.buttons()) titles += (button.isEnabled ? "" : "!") + button.title + '|';
  return titles;
}

constexpr auto always =
    "Check now|Open Ostrel Agent|Copy diagnostics|Send to admin|Container trust…|Quit status icon|";

TEST(PanelContent, ShowsAProtectedDevice) {
  auto model = read(healthy());
  model.snap.guardEcosystems[0].state = "off_by_policy";
  model.snap.policyDirectFlows = 3;
  model.runningContainerRuntimes = {"Podman"};
  model.panelMaxHeight = 700;
  const auto panel = content(model);
  EXPECT_EQ(panel, content(model));
  EXPECT_EQ(panel.header.tint, RowState::Case::ok);
  EXPECT_EQ(panel.statusError, std::nullopt);
  EXPECT_TRUE(panel.cards.empty());
  const PanelContent::Protection protection{
      {"guard", "Guard", RowState::ok("2 of 3 enforced"), ""},
      {{"npm", RowState::off("off by policy")}, {"go", RowState::ok("")}, {"pypi", RowState::ok("")}},
      Copy::offNote({"npm"}, 3),
      "",
      {"egressLock", "Egress lock", RowState::ok("enforcing"), ""},
      {"containers", "Containers", RowState::info("Podman running"), ""}};
  EXPECT_EQ(panel.protection, protection);
  ASSERT_TRUE(panel.health);
  EXPECT_EQ(panel.health->rollup.state, RowState::ok("all components OK"));
  EXPECT_EQ(panel.health->components.size(), 5U);
  const std::vector<PanelContent::Fact> facts = {
      {"Identity", "ost_…9f"}, {"Last check-in", "5 min ago"}, {"Version", "2.4.0"}};
  EXPECT_EQ(panel.facts, facts);
  EXPECT_EQ(titles(panel), always);
  EXPECT_EQ(panel.maxHeight, 700);
}

TEST(PanelContent, ItsDirectionIsThatOfTheLanguageWhateverTheVerdict) {
  auto model = read(healthy());
  EXPECT_EQ(content(model).direction, TextDirection::leftToRight);
  const builders::Translated arabic({{"verdict.protected", "محمي"}});
  model.snap.verdict = "not_protected";
  EXPECT_EQ(content(model).header.word, "Not protected");
  EXPECT_EQ(content(model).direction, TextDirection::rightToLeft);
}

TEST(PanelContent, HasNoCardsAndRowsWithoutAStatus) {
  const auto before = content(StatusPanelModel());
  EXPECT_EQ(before.statusError, RowState::info("checking…"));
  Snapshot failed;
  failed.statusError = "agent status unavailable (exit 3)";
  const auto after = content(read(failed));
  EXPECT_EQ(after.statusError, RowState::warn("agent status unavailable (exit 3)"));
  for (const auto& panel : {before, after}) {
    EXPECT_TRUE(panel.cards.empty());
    EXPECT_EQ(panel.protection, std::nullopt);
    EXPECT_EQ(panel.health, std::nullopt);
    EXPECT_EQ(panel.facts.back().value, "unknown");
    EXPECT_EQ(titles(panel), always);
  }
}

TEST(PanelContent, GivesANoteToEveryRowThatIsNotOk) {
  auto model = read(healthy());
  model.snap.egressLock = builders::health("unknown", "yellow", "EGRESS_LOCK_PARTIAL");
  model.snap.captureSet = builders::health("unknown", "info");
  model.snap.guardEcosystems.clear();
  const auto panel = content(model);
  EXPECT_EQ(panel.protection->noEcosystems, "This agent version does not report per-ecosystem state.");
  EXPECT_TRUE(panel.protection->egressLock.note.starts_with("The lock is still resolving addresses."));
  for (const auto& row : panel.health->components) {
    EXPECT_EQ(row.note.empty(), row.state.isOk()) << row.id;
    EXPECT_EQ(row.isNoteShownOnCard, !row.state.isOk()) << row.id;
  }
  model.snap.daemonListening = false;
  EXPECT_EQ(content(model).protection->noEcosystems, "");
}

TEST(PanelContent, ExpandsTheComponentsOnlyWhenOneNeedsAttention) {
  const auto startsExpanded = [](const char* severity) {
    auto model = read(healthy());
    model.snap.captureSet = builders::health("unknown", severity);
    return content(model).health->startsExpanded;
  };
  EXPECT_FALSE(content(read(healthy())).health->startsExpanded);
  EXPECT_FALSE(startsExpanded("info"));
  EXPECT_TRUE(startsExpanded("yellow"));
  EXPECT_TRUE(startsExpanded("red"));
}

TEST(PanelContent, IsAmberWhileItSettles) {
  auto model = read(healthy());
  model.snap.verdict = "degraded";
  model.snap.sysext = builders::health("broken", "yellow");
  model.snap.sysext.selfHealing = true;
  model.snap.sysext.expectedClearBy = builders::now + 20min;
  const auto deadline = "Usually back to full protection by 10:20 AM.";
  EXPECT_EQ(
      content(model).header,
      (PanelContent::Header{"Settling", deadline, "exclamationmark.triangle.fill", RowState::Case::warn}));
  model.snap.verdict = "not_protected";
  EXPECT_EQ(content(model).header.tint, RowState::Case::bad);
}

TEST(PanelContent, OffersAnUpdateOrShowsThatItInstalls) {
  auto model = read(healthy());
  const auto update = [&](const char* state) {
    model.snap.update = StatusReport::Update{state, "3.0", "2.9"};
    return content(model).update;
  };
  const PanelButton install{"Install…", PanelAction::installUpdate};
  const auto offered = RowState::info("Update available");
  const auto required = RowState::bad("Update required");
  EXPECT_EQ(content(model).update, std::nullopt);
  EXPECT_EQ(update("current"), std::nullopt);
  EXPECT_EQ(update("available"), (PanelContent::Update{offered, "3.0", "", install, "", ""}));
  EXPECT_EQ(update("eol"), (PanelContent::Update{required, "3.0", "below minimum 2.9", install, "", ""}));
  model.updateInFlight = true;
  const PanelContent::Update installing{offered, "3.0", "", {}, "Installing…", "· protection stays on"};
  EXPECT_EQ(update("available"), installing);
}

TEST(PanelContent, NamesWorkInFlightOnButtonsThatCannotBePressedAndShowsNotices) {
  auto model = read(healthy());
  model.snap.lastCheckinError = "timeout";
  model.checkinInFlight = model.diagnosticsInFlight = model.sendDiagnosticsInFlight = true;
  model.checkinNotice = "Checked in";
  model.diagnosticsNotice = "Copied";
  model.sendDiagnosticsError = "Couldn't send: x";
  model.diagnosticsSentAt = builders::now;
  const auto panel = content(model);
  EXPECT_EQ(
      titles(panel),
      "!Checking…|!Checking…|Open Ostrel Agent|!Collecting…|!Sending…|Container trust…|Quit status icon|");
  EXPECT_EQ(panel.inFlight, (PanelContent::InFlight{true, true, true, false}));
  EXPECT_EQ(panel.notices,
            (Texts{"Checked in", "Copied", "Couldn't send: x", "Sent to your admin at 10:00 AM"}));
}

TEST(PanelContent, HasNoButtonForAnActionThatIsNotAvailable) {
  auto model = read(healthy());
  model.snap.update = StatusReport::Update{"eol", "3.0", {}};
  model.snap.caTrusted = false;
  EXPECT_TRUE(titles(content(model)).starts_with("Check now|Install…|Re-trust CA…|Open Ostrel Agent|"));
  EXPECT_EQ(titles(content(model, {PanelAction::openAgentWindow})), "Open Ostrel Agent|Container trust…|");
  EXPECT_EQ(content(model, {}).cards.size(), content(model).cards.size());
  EXPECT_TRUE(content(model, {}).buttons().empty());
}

}  // namespace
}  // namespace ostrel
