#include "OstrelAgent/Onboarding/ActivationState.hpp"

#include <ranges>

#include "OstrelAgent/Text/AsciiCase.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Utf8.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

std::optional<ActivationState> activationOfProgress(std::string_view chunk) {
  std::optional<std::string_view> last;
  for (const auto piece : std::views::split(chunk, '\n')) {
    const std::string_view line(piece.begin(), piece.end());
    if (!isBlank(line)) last = line;
  }
  if (!last) return std::nullopt;
  if (containsIgnoringCase(*last, "approval required"))
    return activationstate::AwaitingApproval{std::string(*last)};
  return activationstate::Running{std::string(*last)};
}

ActivationState activationAfterExit(int status, std::string_view standardError) {
  if (status == 0) return activationstate::Idle{};
  const auto sentence = isUtf8(standardError) ? trimmed(standardError) : std::string_view();
  if (!sentence.empty()) return activationstate::Failed{std::string(sentence)};
  return activationstate::Failed{Copy::Onboarding::activationExited.with(status)};
}

}  // namespace ostrel
