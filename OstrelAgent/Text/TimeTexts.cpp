#include "OstrelAgent/Text/TimeTexts.hpp"

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

std::string TimeTexts::relativeAge(Date date, Date now) const {
  using namespace std::chrono;
  const auto elapsed = now - date;
  if (elapsed < 60s) return std::string(Copy::ageJustNow.text());
  if (elapsed < 1h) return Copy::ageMinutes.with(duration_cast<minutes>(elapsed).count());
  if (elapsed < 24h) return Copy::ageHours.with(duration_cast<hours>(elapsed).count());
  return shortDate(date);
}

}  // namespace ostrel
