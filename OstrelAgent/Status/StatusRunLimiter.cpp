#include "OstrelAgent/Status/StatusRunLimiter.hpp"

#include <algorithm>
#include <utility>

namespace ostrel {

std::optional<StatusRunLimiter::Run> StatusRunLimiter::begin() {
  if (outstanding_.size() >= mostOutstanding) {
    const bool isPlaceComing = std::ranges::any_of(outstanding_, &Outstanding::isBeingEnded);
    if (!isPlaceComing) endOldest();
    isRequestWaiting_ = true;
    return std::nullopt;
  }
  const auto& run = outstanding_.emplace_back(Outstanding{++started_, {}, {}, nullptr});
  return Run{run.number, {run.terminate.get_token(), run.kill.get_token()}};
}

StatusRunLimiter::Finish StatusRunLimiter::finish(std::uint64_t number) {
  const auto run = std::ranges::find(outstanding_, number, &Outstanding::number);
  if (run == outstanding_.end()) return {};
  const bool wasEnded = run->isBeingEnded();
  const bool wasOvertaken = latestFinished_ > number;
  outstanding_.erase(run);
  latestFinished_ = std::max(latestFinished_, number);
  return {.mayPublish = !wasEnded || !wasOvertaken,
          .wasEnded = wasEnded,
          .startsWaiting = std::exchange(isRequestWaiting_, false)};
}

void StatusRunLimiter::endOldest() {
  auto& oldest = outstanding_.front();
  oldest.killTimer =
      mainQueue_.after(graceBeforeKill, [kill = oldest.kill]() mutable { kill.request_stop(); });
  oldest.terminate.request_stop();
}

}  // namespace ostrel
