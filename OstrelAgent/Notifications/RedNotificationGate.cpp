#include "OstrelAgent/Notifications/RedNotificationGate.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace ostrel {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds gapThatCloses = 30s;
constexpr std::chrono::milliseconds lookBack = 300s;
constexpr std::chrono::milliseconds redTimeToPost = 60s;
constexpr std::chrono::milliseconds repostInterval = 86400s;
constexpr std::chrono::milliseconds memoryOfPost = 3600s;

/// A date in the future counts as long ago: the clock was set back. The interval is subtracted from `now`,
/// since a stored date may be close to the type's limits.
bool isLongAgo(Date date, std::chrono::milliseconds interval, Date now) {
  return date > now || date <= now - interval;
}

bool isStale(const RedSpan& span, Date now) { return span.end > now || span.end < now - gapThatCloses; }

bool counts(const RedSpan& span, Date now) {
  return span.start <= span.end && span.end <= now && span.end >= now - lookBack;
}

std::chrono::milliseconds redTime(const RedSpan& running, const std::vector<RedSpan>& closed, Date now) {
  const auto length = [from = now - lookBack](const RedSpan& span) {
    return span.end - std::max(span.start, from);
  };
  auto sum = length(running);
  for (const auto& span : closed) sum += length(span);
  return sum;
}

}  // namespace

RedNotificationGate::Outcome RedNotificationGate::evaluate(const ProtectionVerdict& verdict,
                                                           std::optional<Date> lastPostedAt,
                                                           std::vector<RedSpan> closed,
                                                           std::optional<RedSpan> open, Date now) {
  using Case = ProtectionVerdict::Case;
  const bool ends = verdict.kind != Case::notProtected && verdict.kind != Case::notReported;
  if (open && isStale(*open, now)) closed.push_back(*std::exchange(open, std::nullopt));
  std::erase_if(closed, [now](const RedSpan& span) { return !counts(span, now); });
  if (ends) {
    if (open) closed.push_back(*open);
    if (lastPostedAt && isLongAgo(*lastPostedAt, memoryOfPost, now)) lastPostedAt.reset();
    return {false, lastPostedAt, std::move(closed), std::nullopt};
  }
  if (verdict.kind == Case::notReported) return {false, lastPostedAt, std::move(closed), open};
  const RedSpan running{open ? open->start : now, now};
  const bool isAllowed = !lastPostedAt || isLongAgo(*lastPostedAt, repostInterval, now);
  if (isAllowed && redTime(running, closed, now) >= redTimeToPost) return {true, now, {}, std::nullopt};
  return {false, lastPostedAt, std::move(closed), running};
}

}  // namespace ostrel
