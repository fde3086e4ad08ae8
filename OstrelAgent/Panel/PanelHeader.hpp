#pragma once

#include <optional>
#include <string>

#include "OstrelAgent/Status/Verdict.hpp"
#include "OstrelAgent/Text/TimeTexts.hpp"

namespace ostrel {

/// Whether amber conditions clear by themselves, and by when.
struct Settling {
  enum class Case { settling, notApplicable, needsAction, undated, overdue };

  Case kind = Case::notApplicable;
  std::optional<Date> date;  ///< of `settling` alone: when everything should have cleared

  static Settling read(const ProtectionVerdict& verdict, const Snapshot& snapshot, Date now);

  bool operator==(const Settling&) const = default;
};

/// The top of the panel: a word and, while the device settles, a line with the deadline.
struct PanelHeaderReading {
  Settling settling;
  std::string word;
  std::optional<std::string> deadlineLine;

  static PanelHeaderReading read(const ProtectionVerdict& verdict, const Snapshot& snapshot, Date now,
                                 const TimeTexts& times);

  bool operator==(const PanelHeaderReading&) const = default;
};

}  // namespace ostrel
