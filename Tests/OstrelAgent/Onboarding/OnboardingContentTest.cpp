#include "OstrelAgent/Onboarding/OnboardingContent.hpp"

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

TEST(OnboardingContent, TitleSymbolAndTintFollowStageOutcomeAndMode) {
  struct Row {
    OnboardingStage stage;
    SetupObservation observation;
    std::string_view symbol;
    Tint tint;
    std::string title;
    std::string repairTitle;
  };
  const SetupObservation unfinished;
  const std::string setup = "Set up Ostrel Agent";
  const Row rows[] = {
      {stages::EnterToken{}, done("protected"), "shield.lefthalf.filled", Tint::accent, setup, setup},
      {stages::Trusting{}, unfinished, "shield.lefthalf.filled", Tint::accent, setup, setup},
      {stages::TrustNeeded{"why"}, unfinished, "exclamationmark.shield", Tint::amber, "Setup isn't finished",
       "Setup isn't finished"},
      {stages::Checklist{}, unfinished, "shield.lefthalf.filled", Tint::accent,
       "Finish setting up Ostrel Agent", "Get this Mac protected again"},
      {stages::Checklist{}, done("protected"), "checkmark.shield.fill", Tint::green, "Ostrel Agent is set up",
       "This Mac is protected again"},
      {stages::Checklist{}, done("degraded"), "exclamationmark.shield.fill", Tint::red,
       "This Mac is still not protected", "This Mac is still not protected"},
      {stages::Checklist{}, done(""), "shield", Tint::secondary,
       "This Mac's protection state is not reported", "This Mac's protection state is not reported"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.title);
    const bool isChecklist = std::holds_alternative<stages::Checklist>(row.stage);
    for (const bool isRepair : {false, true}) {
      const auto mode = isRepair ? OnboardingMode::repair : OnboardingMode::onboard;
      const auto content = onboardingContent(modelAt(row.stage, mode, row.observation), false);
      EXPECT_EQ(content.windowTitle, isRepair ? "Repair Ostrel Agent" : "Set Up Ostrel Agent");
      EXPECT_EQ(content.header.symbol, row.symbol);
      EXPECT_EQ(content.header.tint, row.tint);
      EXPECT_EQ(content.header.title, isRepair ? row.repairTitle : row.title);
      EXPECT_EQ(content.header.subtitle.empty(), !isChecklist);
      const bool isDone = isChecklist && row.observation != unfinished;
      EXPECT_EQ(content.closingNote.empty(), isRepair || !isDone);
    }
  }
}

TEST(OnboardingContent, EachStageOffersItsButtons) {
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

TEST(OnboardingContent, TheFirstUnfinishedStepHasTheOnePrimaryButton) {
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

TEST(OnboardingContent, ActivationAndActionErrorsShowAtTheirOwnRows) {
  auto model = modelAt(stages::Checklist{});
  model.activation = activationstate::AwaitingApproval{"line"};
  model.actionError = {OnboardingChecklist::Step::proxy, "no filter"};
  auto content = onboardingContent(model, true);
  EXPECT_EQ(content.rows.at(0).progress, "line");
  EXPECT_TRUE(content.rows.at(0).errors.empty());
  EXPECT_FALSE(content.rows.at(0).buttons.at(0).isEnabled);
  EXPECT_EQ(content.rows.at(1).errors, std::vector<std::string>{"no filter"});
  model.activation = activationstate::Failed{"denied"};
  model.actionError = {OnboardingChecklist::Step::approval, "no settings"};
  content = onboardingContent(model, false);
  EXPECT_EQ(content.rows.at(0).errors, (std::vector<std::string>{"denied", "no settings"}));
  EXPECT_TRUE(content.rows.at(0).buttons.at(0).isEnabled);
}

}  // namespace
}  // namespace ostrel
