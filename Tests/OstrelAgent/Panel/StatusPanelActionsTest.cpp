#include "OstrelAgent/Panel/StatusPanelActions.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(StatusPanelActions, RunTheCallbackOfTheButtonAloneWithItsPage) {
  std::string ran;
  const auto run = [&](std::string_view name) { return [&ran, name] { ran += name; }; };
  StatusPanelActions actions{run("enableEgressLock"),
                             run("enableTransparentProxy"),
                             run("trustDeviceCA"),
                             run("openRepairFlow"),
                             {},
                             run("installUpdate"),
                             run("checkNow"),
                             run("copyDiagnostics"),
                             run("sendDiagnostics"),
                             run("quitStatusIcon")};
  EXPECT_EQ(StatusPanelActions().available(), PanelActionSet());
  StatusPanelActions().perform({"", PanelAction::checkNow});
  EXPECT_FALSE(actions.available().contains(PanelAction::openAgentWindow));
  actions.perform({"", PanelAction::openAgentWindow});
  EXPECT_EQ(ran, "");
  std::optional<AgentPage> opened;
  actions.openAgentWindow = [&](std::optional<AgentPage> page) { opened = page, ran += "openAgentWindow"; };
  EXPECT_EQ(actions.available().size(), 10U);
  for (const auto action : actions.available()) {
    ran.clear();
    actions.perform({"", action, AgentPage::help});
    EXPECT_EQ(ran, nameOf(action));
  }
  EXPECT_EQ(opened, AgentPage::help);
  ran.clear();
  actions.perform({.title = "", .action = PanelAction::checkNow, .isEnabled = false});
  EXPECT_EQ(ran, "") << "it is at work already";
}

}  // namespace
}  // namespace ostrel
