#pragma once

#include <cstddef>
#include <string>

namespace ostrel {

/// CPU of the containers' part, in microseconds; medians.
struct ContainerFigures {
  double detection = 0;  ///< running runtimes among 200 applications and 2,000 processes
  double page = 0;       ///< trust reading and page of a Mac that has all fifteen runtimes
  double reading = 0;    ///< what a refresh adds, on a Mac with a dozen applications and 100 processes
};
ContainerFigures measureContainers();

/// The file of a simulated Mac with a dozen applications and 100 processes.
std::string usualApplications();

}  // namespace ostrel
