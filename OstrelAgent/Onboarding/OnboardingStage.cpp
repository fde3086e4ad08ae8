#include "OstrelAgent/Onboarding/OnboardingStage.hpp"

namespace ostrel {

namespace {

using Kind = OnboardingEvent::Kind;
namespace stages = onboardingstage;

constexpr std::size_t anyStage = std::variant_npos;

using MakeStage = OnboardingStage (*)(const std::string& text);

constexpr MakeStage checklist = [](const std::string&) -> OnboardingStage { return stages::Checklist{}; };
constexpr MakeStage enrolling = [](const std::string&) -> OnboardingStage { return stages::Enrolling{}; };
constexpr MakeStage trusting = [](const std::string&) -> OnboardingStage { return stages::Trusting{}; };
constexpr MakeStage enterToken = [](const std::string& text) -> OnboardingStage {
  return stages::EnterToken{text};
};
constexpr MakeStage trustNeeded = [](const std::string& text) -> OnboardingStage {
  return stages::TrustNeeded{text};
};

struct Transition {
  std::size_t from;
  Kind event;
  MakeStage to;
};

constexpr std::size_t atToken = 0;
constexpr std::size_t atTrustNeeded = 1;
constexpr std::size_t atEnrolling = 2;
constexpr std::size_t atTrusting = 3;
constexpr std::size_t atChecklist = 4;

constexpr Transition transitions[] = {
    {atToken, Kind::tokenRejected, enterToken},       {atToken, Kind::enrolmentBegan, enrolling},
    {atEnrolling, Kind::enrolmentFailed, enterToken}, {anyStage, Kind::trustBegan, trusting},
    {atTrusting, Kind::trusted, checklist},           {atTrusting, Kind::trustRefused, trustNeeded},
    {atTrustNeeded, Kind::trustDeferred, checklist},  {atChecklist, Kind::trustOwed, trustNeeded},
};

}  // namespace

OnboardingStage initialStage(OnboardingMode mode) {
  if (mode == OnboardingMode::repair) return stages::Checklist{};
  return stages::EnterToken{};
}

std::optional<OnboardingStage> stageAfter(const OnboardingStage& stage, const OnboardingEvent& event) {
  for (const auto& row : transitions) {
    if (row.event != event.kind || (row.from != anyStage && row.from != stage.index())) continue;
    return row.to(event.text);
  }
  return std::nullopt;
}

}  // namespace ostrel
