#pragma once

#include <optional>
#include <vector>

#include "OstrelAgent/Status/Verdict.hpp"
#include "Platform/Date.hpp"

namespace ostrel {

/// One stretch of time during which the verdict was "not protected".
struct RedSpan {
  Date start;
  Date end;  ///< when the verdict was last seen so

  bool operator==(const RedSpan&) const = default;
};

/// Decides when a Mac that is not protected is worth a notification: after a minute of it within five, and
/// while it lasts once a day.
struct RedNotificationGate {
  struct Outcome {
    bool post = false;                 ///< post the notification now
    std::optional<Date> lastPostedAt;  ///< what to remember as the time of the last post
    std::vector<RedSpan> closed;       ///< finished spans that still count
    std::optional<RedSpan> open;       ///< the span that goes on

    bool operator==(const Outcome&) const = default;
  };

  /// The outcome of one reading, given what the last outcome said.
  static Outcome evaluate(const ProtectionVerdict& verdict, std::optional<Date> lastPostedAt,
                          std::vector<RedSpan> closed, std::optional<RedSpan> open, Date now);
};

}  // namespace ostrel
