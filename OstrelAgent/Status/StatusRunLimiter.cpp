#include "OstrelAgent/Status/StatusRunLimiter.hpp"

#include <algorithm>

namespace ostrel {

std::optional<std::uint64_t> StatusRunLimiter::begin() {
  const auto latest = ages_.find(latest_);
  const bool isTooSoon = latest != ages_.end() && latest->second < secondsUntilNext;
  if (!isRequested_ || isTooSoon) return std::nullopt;
  isRequested_ = false;
  ages_[++latest_] = 0;
  return latest_;
}

bool StatusRunLimiter::countSecond(std::uint64_t number) { return ++ages_.at(number) >= secondsUntilOver; }

bool StatusRunLimiter::finish(std::uint64_t number) {
  ages_.erase(number);
  const bool isOvertaken = latestFinished_ > number;
  latestFinished_ = std::max(latestFinished_, number);
  return !isOvertaken;
}

std::optional<std::uint64_t> LoadLimiter::ask() {
  if (pause_) return std::nullopt;
  ++asked_;
  if (isExhausted()) pause_ = mainQueue_.after(retryInterval, [this] { pause_ = nullptr; });
  return asked_;
}

void LoadLimiter::answer(std::uint64_t number) {
  answered_ = std::max(answered_, number);
  if (!isExhausted()) pause_ = nullptr;
}

}  // namespace ostrel
