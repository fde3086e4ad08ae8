#pragma once

#include <string>

#include "OstrelAgent/Containers/ContainersPage.hpp"

namespace ostrel {

/// The page's list of runtimes and what is done inside containers.
std::string containersText(const ContainersPageContent& content);

/// The detail of the selected runtime, or that none is selected.
std::string containerDetailText(const ContainersPageContent& content);

}  // namespace ostrel
