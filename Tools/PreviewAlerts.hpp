#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "Platform/Alerts.hpp"

namespace ostrel {

/// The names of the alerts that can be shown.
std::span<const std::string_view> previewAlertNames();

/// The alert of that name; nullopt for an unknown name.
std::optional<Alert> previewAlert(std::string_view name);

}  // namespace ostrel
