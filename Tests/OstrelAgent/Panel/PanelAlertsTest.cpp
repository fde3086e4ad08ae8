#include "OstrelAgent/Panel/PanelMessages.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using Case = ControlSocketError::Case;

TEST(PanelAlerts, AServiceThatDoesNotKnowUpdatesIsTooOldForThem) {
  const auto isTooOld = [](const ControlSocketError& error) {
    return updateFailedAlert(error).text.starts_with("This Mac's Ostrel Guard service is too old");
  };
  EXPECT_TRUE(isTooOld({.kind = Case::requestFailed, .message = "unknown action \"update\""}));
  EXPECT_TRUE(isTooOld({.kind = Case::refused, .message = "unknown action", .reason = "unknown_action"}));
  EXPECT_EQ(updateFailedAlert({.kind = Case::refused, .message = "An unknown hash.", .reason = "hash"}).text,
            "An unknown hash.");
  EXPECT_NE(updateFailedAlert({.kind = Case::notAdmin}).text.find("install updates"), std::string::npos);
}

}  // namespace
}  // namespace ostrel
