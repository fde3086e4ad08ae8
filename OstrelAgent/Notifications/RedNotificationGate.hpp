#pragma once

#include <optional>
#include <vector>

#include "OstrelAgent/Status/Verdict.hpp"
#include "Platform/Date.hpp"

namespace ostrel {

/// A span of time during which the verdict was "not protected".
struct RedSpan {
  Date start;
  Date end;  ///< latest reading with that verdict

  bool operator==(const RedSpan&) const = default;
};

/// Decides when to notify that the Mac is not protected: after one red minute within five, then once a day
/// while it lasts.
struct RedNotificationGate {
  struct Outcome {
    bool post = false;                 ///< post the notification now
    std::optional<Date> lastPostedAt;  ///< the date to remember as that of the last post
    std::vector<RedSpan> closed;       ///< finished spans that still count
    std::optional<RedSpan> open;       ///< the current span

    bool operator==(const Outcome&) const = default;
  };

  /// The outcome of one reading, given the previous outcome.
  static Outcome evaluate(const ProtectionVerdict& verdict, std::optional<Date> lastPostedAt,
                          std::vector<RedSpan> closed, std::optional<RedSpan> open, Date now);
};

}  // namespace ostrel
