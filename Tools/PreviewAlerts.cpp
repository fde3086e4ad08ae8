#include "Tools/PreviewAlerts.hpp"

#include <algorithm>
#include <array>
#include <iterator>

#include "OstrelAgent/Panel/PanelMessages.hpp"

namespace ostrel {

namespace {

struct AlertRow {
  std::string_view name;
  Alert (*alert)();
};

constexpr AlertRow rows[] = {
    {"install", installAlert},
    {"update-failed",
     [] {
       return updateFailedAlert(
           {.kind = ControlSocketError::Case::requestFailed, .message = "unknown action \"update\""});
     }},
};

constexpr auto names = [] {
  std::array<std::string_view, std::size(rows)> all;
  std::ranges::transform(rows, all.begin(), &AlertRow::name);
  return all;
}();

}  // namespace

std::span<const std::string_view> previewAlertNames() { return names; }

std::optional<Alert> previewAlert(std::string_view name) {
  const auto* row = std::ranges::find(rows, name, &AlertRow::name);
  if (row == std::end(rows)) return std::nullopt;
  return row->alert();
}

}  // namespace ostrel
