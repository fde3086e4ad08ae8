#include "OstrelAgent/StatusPanelActions.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(StatusPanelActions, RunTheCallbackOfTheButtonAlone) {
  std::string ran;
  StatusPanelActions actions;
  actions.enableEgressLock = [&] { ran += "enableEgressLock"; };
  actions.enableTransparentProxy = [&] { ran += "enableTransparentProxy"; };
  actions.trustDeviceCA = [&] { ran += "trustDeviceCA"; };
  actions.openRepairFlow = [&] { ran += "openRepairFlow"; };
  actions.openAgentWindow = [&](AgentPage) { ran += "openAgentWindow"; };
  actions.installUpdate = [&] { ran += "installUpdate"; };
  actions.checkNow = [&] { ran += "checkNow"; };
  actions.copyDiagnostics = [&] { ran += "copyDiagnostics"; };
  actions.sendDiagnostics = [&] { ran += "sendDiagnostics"; };
  actions.quitStatusIcon = [&] { ran += "quitStatusIcon"; };
  EXPECT_EQ(actions.available().size(), 10U);
  for (const auto action : actions.available()) {
    ran.clear();
    actions.perform({"", action});
    EXPECT_EQ(ran, nameOf(action));
  }
}

TEST(StatusPanelActions, HandThePageOn) {
  std::optional<AgentPage> opened;
  StatusPanelActions actions;
  actions.openAgentWindow = [&](AgentPage page) { opened = page; };
  actions.perform({"", PanelAction::openAgentWindow, AgentPage::help});
  EXPECT_EQ(opened, AgentPage::help);
  actions.perform({"", PanelAction::openAgentWindow});
  EXPECT_EQ(opened, AgentPage::ecosystems);
}

TEST(StatusPanelActions, DoNothingWithoutACallback) {
  StatusPanelActions actions;
  actions.perform({"", PanelAction::checkNow});
  actions.perform({"", PanelAction::openAgentWindow});
  EXPECT_EQ(actions.available(), PanelActionSet());
  actions.sendDiagnostics = [] {};
  EXPECT_EQ(actions.available(), PanelActionSet{PanelAction::sendDiagnostics});
}

}  // namespace
}  // namespace ostrel
