#pragma once

#include <string>
#include <vector>

namespace ostrel {

/// One row of the table of docs/PERFORMANCE.md, on standard output.
void printRow(const char* what, const std::string& measured, const std::string& reference,
              const std::string& ratio, const char* bar);

/// A row whose ratio is that of two figures in one unit.
void compare(const char* what, const char* unit, double measured, double reference, const char* bar);

/// A number by a format of printf.
std::string formatted(const char* format, double value);

/// The upper one of two in the middle.
double median(std::vector<double> values);

/// The report that the figures are about.
std::string readReport();

}  // namespace ostrel
