#include "OstrelAgent/Onboarding/OnboardingFlow.hpp"

#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

namespace {

constexpr std::string_view tokenPrefix = "zq_enroll_";

}  // namespace

std::expected<std::string, std::string> acceptableToken(std::string_view typed) {
  const auto token = trimmed(typed);
  if (token.starts_with(tokenPrefix) && token.size() > tokenPrefix.size()) return std::string(token);
  return std::unexpected(Copy::Onboarding::tokenErrorBadPrefix.with(tokenPrefix));
}

}  // namespace ostrel
