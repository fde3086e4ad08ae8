#include "OstrelAgent/Notifications/ContainerBlockNotificationGate.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

constexpr Date now{std::chrono::seconds(1700000000)};

TEST(ContainerBlockNotificationGate, PostsForEnabledRuntimesInTheOrderOfTheReportEachOnce) {
  const std::map<std::string, Date> before = {{"Lima", now - 48h}, {"Colima", now - 1h}};
  const auto outcome = ContainerBlockNotificationGate::evaluate(
      {"Podman", "Docker", "Lima", "Colima", "Podman"}, {"Colima", "Lima", "Podman"}, before, now);
  EXPECT_EQ(outcome.post, (Names{"Podman", "Lima"}));
  EXPECT_EQ(outcome.lastPostedAt,
            (std::map<std::string, Date>{{"Podman", now}, {"Lima", now}, {"Colima", now - 1h}}));
}

TEST(ContainerBlockNotificationGate, ReportsARuntimeAgainAfterADay) {
  const std::pair<Date, bool> rows[] = {
      {now, false},      {now - 24h + 1ms, false}, {now - 24h, true},
      {now + 1ms, true}, {Date::min(), true},      {Date::max(), true},
  };
  for (const auto& [last, posts] : rows) {
    const auto outcome = ContainerBlockNotificationGate::evaluate({"Lima"}, {"Lima"}, {{"Lima", last}}, now);
    EXPECT_EQ(outcome.post, posts ? Names{"Lima"} : Names{}) << last.time_since_epoch().count();
    EXPECT_EQ(outcome.lastPostedAt.at("Lima"), posts ? now : last);
  }
}

}  // namespace
}  // namespace ostrel
