#pragma once

#include <nlohmann/json_fwd.hpp>

#include "OstrelAgent/Containers/ContainersPage.hpp"

namespace ostrel {

/// The content of the containers page as one JSON object, with the text that each of its buttons copies;
/// absent values are null.
nlohmann::ordered_json containersJson(const ContainersPage& page);

}  // namespace ostrel
