#include "OstrelAgent/Text/TimeTexts.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

TEST(TimeTexts, GiveAnAgeInWholeUnitsThenADate) {
  const std::pair<std::chrono::milliseconds, const char*> rows[] = {
      {-2h, "just now"},     {60s - 1ms, "just now"}, {60s, "1 min ago"},      {119s, "1 min ago"},
      {3599s, "59 min ago"}, {3600s, "1 h ago"},      {24h - 1ms, "23 h ago"}, {24h, "1/1/25, 10:00 AM"}};
  for (const auto& [age, text] : rows) {
    EXPECT_EQ(builders::times().relativeAge(builders::now - age, builders::now), text) << age.count();
  }
}

}  // namespace
}  // namespace ostrel
