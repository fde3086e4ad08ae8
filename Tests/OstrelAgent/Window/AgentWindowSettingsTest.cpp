#include "OstrelAgent/Window/AgentWindowSettings.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Fakes/FakeUserDefaults.hpp"

namespace ostrel {
namespace {

using Numbers = std::vector<double>;

struct AgentWindowSettingsTest : testing::Test {
  FakeUserDefaults defaults;
  FakeLog log;
  AgentWindowSettings settings{defaults, log};
};

TEST_F(AgentWindowSettingsTest, OutliveARestart) {
  EXPECT_EQ(settings.read(), (AgentWindowModel{AgentPage::ecosystems, {780, 540}}));
  settings.storePage(AgentPage::egressLock);
  settings.storeSize({900.5, 700});
  EXPECT_EQ(defaults.get<std::string>("AgentWindowPage"), "egressLock");
  EXPECT_EQ(settings.read(), (AgentWindowModel{AgentPage::egressLock, {900.5, 700}}));
}

TEST_F(AgentWindowSettingsTest, UnreadableValuesCountAsAbsent) {
  const DefaultsValue pages[] = {std::string("panel"), std::string(), true, Numbers{1}};
  for (const auto& page : pages) {
    ASSERT_TRUE(defaults.set("AgentWindowPage", page));
    EXPECT_EQ(settings.read().page, AgentPage::ecosystems) << page.index();
  }
  constexpr auto infinity = std::numeric_limits<double>::infinity();
  const std::pair<DefaultsValue, WindowSize> sizes[] = {
      {std::string("800x600"), {780, 540}},
      {std::vector<std::string>{"800", "600"}, {780, 540}},
      {Numbers{800}, {780, 540}},
      {Numbers{800, 600, 400}, {780, 540}},
      {Numbers{800, infinity}, {780, 540}},
      {Numbers{std::numeric_limits<double>::quiet_NaN(), 600}, {780, 540}},
      {Numbers{800, -5}, {800, 360}},
      {Numbers{0, 1e9}, {620, 1e9}},
  };
  for (const auto& [stored, size] : sizes) {
    ASSERT_TRUE(defaults.set("AgentWindowSize", stored));
    EXPECT_TRUE(settings.read().size == size) << size.width;
  }
}

TEST_F(AgentWindowSettingsTest, AFailureIsLogged) {
  defaults.writeError = PlatformError{"POSIX", 28, "full"};
  settings.storePage(AgentPage::help);
  EXPECT_EQ(log.lines, std::vector<std::string>{"ostrel: could not store AgentWindowPage: full"});
}

}  // namespace
}  // namespace ostrel
