#include "OstrelAgent/Onboarding/OnboardingContent.hpp"

#include <algorithm>
#include <utility>

#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Overloaded.hpp"

namespace ostrel {

namespace {

using Texts = Copy::Onboarding;
using Step = OnboardingChecklist::Step;
using Tint = OnboardingContent::Tint;
namespace stages = onboardingstage;

OnboardingButton button(const Message& title, OnboardingAction action) {
  return {.title = std::string(title.text()), .action = action};
}

OnboardingButton primary(const Message& title, OnboardingAction action) {
  auto made = button(title, action);
  made.isPrimary = true;
  return made;
}

struct OutcomeRow {
  SetupOutcome outcome;
  std::string_view symbol;
  Tint tint;
  Message onboardTitle;
  Message repairTitle;
  Message subtitle;
};

constexpr std::string_view setupSymbol = "shield.lefthalf.filled";

constexpr OutcomeRow outcomeRows[] = {
    {SetupOutcome::unfinished, setupSymbol, Tint::accent, Texts::titleFinishSetup,
     Texts::titleGetProtectedAgain, Texts::subtitleUnfinished},
    {SetupOutcome::isProtected, "checkmark.shield.fill", Tint::green, Texts::titleSetUp,
     Texts::titleProtectedAgain, Texts::subtitleProtected},
    {SetupOutcome::stepsDoneNotProtected, "exclamationmark.shield.fill", Tint::red,
     Texts::titleStillNotProtected, Texts::titleStillNotProtected, Texts::subtitleStepsDoneNotProtected},
    {SetupOutcome::verdictUnreported, "shield", Tint::secondary, Texts::titleVerdictUnreported,
     Texts::titleVerdictUnreported, Texts::subtitleVerdictUnreported},
};

OnboardingContent::Header checklistHeader(OnboardingMode mode, SetupOutcome outcome) {
  const auto& row = *std::ranges::find(outcomeRows, outcome, &OutcomeRow::outcome);
  const auto& title = mode == OnboardingMode::repair ? row.repairTitle : row.onboardTitle;
  return {row.symbol, row.tint, std::string(title.text()), std::string(row.subtitle.text())};
}

OnboardingContent::Header headerOf(const OnboardingFlowModel& model) {
  if (std::holds_alternative<stages::Checklist>(model.stage)) {
    return checklistHeader(model.mode, OnboardingChecklist::outcome(model.observation));
  }
  if (std::holds_alternative<stages::TrustNeeded>(model.stage)) {
    return {"exclamationmark.shield", Tint::amber, std::string(Texts::titleSetupUnfinished.text()), ""};
  }
  return {setupSymbol, Tint::accent, std::string(Texts::titleSetup.text()), ""};
}

/// The activation's progress text beside the approval step.
void addActivation(OnboardingContent::Row& row, const ActivationState& activation) {
  std::visit(Overloaded{
                 [&](const activationstate::Running& running) { row.progress = running.line; },
                 [&](const activationstate::AwaitingApproval& awaiting) { row.progress = awaiting.line; },
                 [&](const activationstate::Failed& failed) { row.errors.push_back(failed.message); },
                 [](const activationstate::Idle&) {},
             },
             activation);
}

std::vector<OnboardingButton> approvalButtons(bool isActivating) {
  auto reopen = primary(Texts::buttonReopenApproval, OnboardingAction::reopenApprovalPrompt);
  reopen.isEnabled = !isActivating;
  return {std::move(reopen), button(Texts::buttonOpenSettings, OnboardingAction::openExtensionSettings)};
}

std::vector<OnboardingButton> buttonsOf(Step step, bool isActivating) {
  if (step == Step::approval) return approvalButtons(isActivating);
  if (step == Step::proxy) {
    return {primary(Copy::buttonTurnOnFilter, OnboardingAction::turnOnNetworkFilter)};
  }
  return {};
}

OnboardingContent::Row rowOf(Step step, ChecklistStepState state, const OnboardingFlowModel& model,
                             bool isActivating) {
  OnboardingContent::Row row;
  row.step = step;
  row.state = state;
  row.title = OnboardingChecklist::title(step);
  row.note = OnboardingChecklist::note(step, state);
  if (step == Step::approval) addActivation(row, model.activation);
  if (model.actionError && model.actionError->step == step) row.errors.push_back(model.actionError->message);
  if (state != ChecklistStepState::satisfied) row.buttons = buttonsOf(step, isActivating);
  return row;
}

/// Keeps only the first helpful button as the primary one.
void keepOnePrimary(std::vector<OnboardingContent::Row>& rows) {
  bool isFound = false;
  for (auto& row : rows) {
    for (auto& each : row.buttons) isFound |= std::exchange(each.isPrimary, each.isPrimary && !isFound);
  }
}

void addChecklist(OnboardingContent& content, const OnboardingFlowModel& model, bool isActivating) {
  for (const auto& [step, state] : OnboardingChecklist::steps(model.observation)) {
    content.rows.push_back(rowOf(step, state, model, isActivating));
  }
  keepOnePrimary(content.rows);
  const auto outcome = OnboardingChecklist::outcome(model.observation);
  const bool isDone = outcome != SetupOutcome::unfinished;
  if (isDone && model.mode == OnboardingMode::onboard) content.closingNote = Texts::settleNote.text();
  content.buttons = {isDone ? primary(Texts::buttonDone, OnboardingAction::finish)
                            : button(Texts::buttonClose, OnboardingAction::finish)};
}

void addTrustNeeded(OnboardingContent& content, const std::string& reason) {
  // In repair the reason makes the introduction redundant.
  if (reason != Texts::trustNeededOwedInRepair.text()) {
    content.paragraphs.emplace_back(Texts::trustNeededIntro.text());
  }
  content.paragraphs.push_back(reason);
  content.buttons = {primary(Texts::buttonTrustCertificate, OnboardingAction::retryTrust),
                     button(Texts::buttonNotNow, OnboardingAction::deferTrust)};
}

void addTokenEntry(OnboardingContent& content, bool isEnabled, const std::string& error) {
  content.paragraphs.emplace_back(Texts::tokenPrompt.text());
  content.tokenField = {isEnabled, error};
  auto enrol = primary(Texts::buttonEnrol, OnboardingAction::enrol);
  enrol.isEnabled = isEnabled;
  content.buttons = {std::move(enrol)};
}

}  // namespace

std::vector<OnboardingButton> OnboardingContent::allButtons() const {
  std::vector<OnboardingButton> all;
  for (const auto& row : rows) all.insert(all.end(), row.buttons.begin(), row.buttons.end());
  all.insert(all.end(), buttons.begin(), buttons.end());
  return all;
}

OnboardingContent onboardingContent(const OnboardingFlowModel& model, bool isActivating) {
  const bool isRepair = model.mode == OnboardingMode::repair;
  OnboardingContent content;
  content.windowTitle = isRepair ? Texts::windowRepair.text() : Texts::windowSetup.text();
  content.header = headerOf(model);
  content.direction = directionOf(content.header.title);
  std::visit(
      Overloaded{
          [&](const stages::EnterToken& stage) { addTokenEntry(content, true, stage.error.value_or("")); },
          [&](const stages::TrustNeeded& stage) { addTrustNeeded(content, stage.reason); },
          [&](const stages::Enrolling&) {
            addTokenEntry(content, false, "");
            content.progress = Texts::enrolling.text();
          },
          [&](const stages::Trusting&) {
            content.paragraphs.emplace_back(Texts::trustingPrompt.text());
            content.progress = Texts::waitingForMacOS.text();
          },
          [&](const stages::Checklist&) { addChecklist(content, model, isActivating); },
      },
      model.stage);
  return content;
}

}  // namespace ostrel
