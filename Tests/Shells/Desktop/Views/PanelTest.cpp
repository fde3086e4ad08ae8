#include "Tests/Shells/Desktop/Views/PanelTest.hpp"

#include "Shells/Desktop/Views/Panel/PanelWindow.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {

namespace {

PanelContent contentOf(Snapshot snapshot) {
  StatusPanelModel model;
  model.snap = std::move(snapshot);
  model.hasReading = true;
  model.panelMaxHeight = 5000;
  return panelContent(model, builders::now, builders::times(), allPanelActions());
}

}  // namespace

PanelTest::PanelTest() {
  PanelViewEvents events{[this](const PanelButton& button) {
                           pressed.push_back(button);
                           if (onPress) onPress();
                         },
                         [this] { ++losses; }};
  auto made = PanelWindow::make(log, std::move(events));
  if (!made) throw std::runtime_error(made.error());
  panel = std::move(*made);
}

PanelTest::~PanelTest() {
  EXPECT_EQ(panel->isShown() ? unspoken() : std::vector<std::string>(), std::vector<std::string>());
}

void PanelTest::open(const PanelContent& content) {
  panel->open(content, anchor, theme);
  awaitWindow();
}

PanelContent protectedContent() { return contentOf(builders::healthy()); }

PanelContent unprotectedContent() {
  auto snapshot = builders::healthy();
  snapshot.verdict = "not_protected";
  snapshot.caTrusted = false;
  snapshot.deviceCA = builders::health("broken", "red");
  snapshot.egressLock = builders::health("broken", "yellow", "EGRESS_LOCK_SWITCHED_OFF");
  snapshot.guardEcosystems[0].state = "off_by_policy";
  snapshot.update = StatusReport::Update{"eol", "3.0", "2.9"};
  return contentOf(std::move(snapshot));
}

}  // namespace ostrel
