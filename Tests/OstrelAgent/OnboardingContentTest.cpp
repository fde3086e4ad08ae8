#include "OstrelAgent/OnboardingContent.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrel {
namespace {

using Tint = OnboardingContent::Tint;
using enum OnboardingAction;
namespace stages = onboardingstage;

SetupObservation done(std::string verdict) {
  return {.statusRead = true,
          .daemonListening = true,
          .sysextActive = true,
          .sysextState = "ok",
          .sysextCode = "SYSEXT_DIVERTING",
          .transparentProxyEnabled = true,
          .verdict = std::move(verdict)};
}

OnboardingFlowModel modelAt(OnboardingStage stage, OnboardingMode mode = OnboardingMode::onboard,
                            SetupObservation observation = {}) {
  OnboardingFlowModel model(mode);
  model.stage = std::move(stage);
  model.observation = std::move(observation);
  return model;
}

std::vector<OnboardingAction> actionsOf(const OnboardingContent& content) {
  std::vector<OnboardingAction> actions;
  for (const auto& button : content.allButtons()) actions.push_back(button.action);
  return actions;
}

std::ptrdiff_t countPrimary(const OnboardingContent& content) {
  return std::ranges::count(content.allButtons(), true, &OnboardingButton::isPrimary);
}

TEST(OnboardingContent, TitleSymbolAndTintGoByStageOutcomeAndMode) {
  const SetupObservation unfinished;
  struct Row {
    OnboardingStage stage;
    SetupObservation observation;
    OnboardingContent::Header onboard;
    std::string repairTitle;
  };
  const OnboardingContent::Header setup{"shield.lefthalf.filled", Tint::accent, "Set up Ostrel Agent", ""};
  const Row rows[] = {
      {stages::EnterToken{}, done("protected"), setup, setup.title},
      {stages::Enrolling{}, unfinished, setup, setup.title},
      {stages::Trusting{}, unfinished, setup, setup.title},
      {stages::TrustNeeded{"why"},
       unfinished,
       {"exclamationmark.shield", Tint::amber, "Setup isn't finished", ""},
       "Setup isn't finished"},
      {stages::Checklist{},
       unfinished,
       {"shield.lefthalf.filled", Tint::accent, "Finish setting up Ostrel Agent",
        "This list updates by itself as each step is done. You can leave it open."},
       "Get this Mac protected again"},
      {stages::Checklist{},
       done("protected"),
       {"checkmark.shield.fill", Tint::green, "Ostrel Agent is set up",
        "The menu bar icon shows this status at any time."},
       "This Mac is protected again"},
      {stages::Checklist{},
       done("degraded"),
       {"exclamationmark.shield.fill", Tint::red, "This Mac is still not protected",
        "These three steps are done, and something else on this Mac is still wrong. Open the menu bar icon "
        "to see "
        "which part, and what to do about it."},
       "This Mac is still not protected"},
      {stages::Checklist{},
       done(""),
       {"shield", Tint::secondary, "This Mac's protection state is not reported",
        "These three steps are done. This Mac has not reported whether it is protected. Open the menu bar "
        "icon to "
        "check again."},
       "This Mac's protection state is not reported"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.onboard.title);
    EXPECT_EQ(onboardingContent(modelAt(row.stage, OnboardingMode::onboard, row.observation), false).header,
              row.onboard);
    EXPECT_EQ(
        onboardingContent(modelAt(row.stage, OnboardingMode::repair, row.observation), false).header.title,
        row.repairTitle);
  }
}

TEST(OnboardingContent, EachStageOffersWhatLeadsOn) {
  const auto needed = onboardingContent(modelAt(stages::TrustNeeded{"why"}), false);
  EXPECT_EQ(needed.paragraphs.back(), "why");
  EXPECT_EQ(needed.paragraphs.size(), 2u);
  EXPECT_EQ(actionsOf(needed), (std::vector{retryTrust, deferTrust}));
  EXPECT_EQ(actionsOf(onboardingContent(modelAt(stages::Trusting{}), false)),
            std::vector<OnboardingAction>());

  const auto entry = onboardingContent(modelAt(stages::EnterToken{"bad"}), false);
  EXPECT_EQ(entry.tokenField, (OnboardingContent::TokenField{true, "bad"}));
  const auto enrolling = onboardingContent(modelAt(stages::Enrolling{}), false);
  EXPECT_EQ(enrolling.tokenField, (OnboardingContent::TokenField{false, ""}));
  EXPECT_FALSE(enrolling.buttons.at(0).isEnabled);
  EXPECT_EQ(enrolling.progress, "Enrolling this device…");
}

TEST(OnboardingContent, TheChecklistHasOnePrimaryButtonForTheFirstStepThatCanBeHelped) {
  struct Row {
    SetupObservation observation;
    std::vector<OnboardingAction> actions;
    OnboardingAction primary;
  };
  auto filterOff = done("degraded");
  filterOff.transparentProxyEnabled = false;
  const Row rows[] = {
      {{}, {reopenApprovalPrompt, openExtensionSettings, turnOnNetworkFilter, finish}, reopenApprovalPrompt},
      {filterOff, {turnOnNetworkFilter, finish}, turnOnNetworkFilter},
      {done("protected"), {finish}, finish},
  };
  for (const auto& row : rows) {
    const auto content =
        onboardingContent(modelAt(stages::Checklist{}, OnboardingMode::repair, row.observation), false);
    EXPECT_EQ(actionsOf(content), row.actions);
    EXPECT_EQ(countPrimary(content), 1);
    const auto buttons = content.allButtons();
    EXPECT_EQ(std::ranges::find(buttons, true, &OnboardingButton::isPrimary)->action, row.primary);
  }
}

TEST(OnboardingContent, ActivationAndActionErrorsStandAtTheirOwnRows) {
  auto model = modelAt(stages::Checklist{});
  model.activation = activationstate::AwaitingApproval{"line"};
  model.actionError = {OnboardingChecklist::Step::proxy, "no filter"};
  auto content = onboardingContent(model, true);
  EXPECT_EQ(content.rows.at(0).progress, "line");
  EXPECT_EQ(content.rows.at(0).error, "");
  EXPECT_FALSE(content.rows.at(0).buttons.at(0).isEnabled);
  EXPECT_EQ(content.rows.at(1).error, "no filter");
  model.activation = activationstate::Failed{"denied"};
  content = onboardingContent(model, false);
  EXPECT_EQ(content.rows.at(0).error, "denied");
  EXPECT_TRUE(content.rows.at(0).buttons.at(0).isEnabled);
}

}  // namespace
}  // namespace ostrel
