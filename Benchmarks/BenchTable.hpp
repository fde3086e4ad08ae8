#pragma once

#include <string>
#include <vector>

namespace ostrel {

/// One row of the table of docs/PERFORMANCE.md, on standard output.
void printRow(const char* what, const std::string& measured, const std::string& reference,
              const std::string& ratio, const char* bar);

/// A row with the ratio of two figures in one unit.
void compare(const char* what, const char* unit, double measured, double reference, const char* bar);

/// Formats a number with a printf format.
std::string formatted(const char* format, double value);

/// The median; of two middle values the upper one.
double median(std::vector<double> values);

/// CPU time that this process has used.
double cpuSeconds();

/// The report that the benchmarks decode.
std::string readReport();

}  // namespace ostrel
