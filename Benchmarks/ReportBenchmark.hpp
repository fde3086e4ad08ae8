#pragma once

#include <string>

namespace ostrel {

/// Microseconds for one report: the panel content from its bytes, and the JSON library's document of the same
/// bytes.
struct ReportFigures {
  double panelMicroseconds = 0;
  double domMicroseconds = 0;
};

/// Measures with the given report, the median of several repetitions each.
ReportFigures measureReport(const std::string& report);

}  // namespace ostrel
