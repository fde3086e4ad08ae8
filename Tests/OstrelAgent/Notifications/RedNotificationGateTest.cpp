#include "OstrelAgent/Notifications/RedNotificationGate.hpp"

#include <gtest/gtest.h>

#include <string_view>

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Case = ProtectionVerdict::Case;

constexpr Date start{std::chrono::seconds(1700000000)};

/// Feeds the gate with its own outcomes, and counts what it posts.
struct Readings {
  bool read(Case verdict, Date now) {
    last = RedNotificationGate::evaluate({verdict}, last.lastPostedAt, last.closed, last.open, now);
    posts += last.post ? 1 : 0;
    return last.post;
  }

  RedNotificationGate::Outcome last;
  int posts = 0;
};

TEST(RedNotificationGate, PostsAfterOneRedMinuteWithinFive) {
  // One letter every five seconds: red, green, unreported, or none at all.
  struct Row {
    std::string_view readings;
    std::size_t postsAt;  ///< npos where none does
  };
  constexpr auto never = std::string_view::npos;
  const Row rows[] = {
      {"r", never},
      {"rrrrrrrrrrrr", never},
      {"rrrrrrrrrrrrr", 12},
      {"rgrgrgrgrgrgrgrgrgrgrgrgrgrg", never},
      {"rrrrrrrrrggggrrrrr", 17},      // 40 s, 20 s of protection, 20 s
      {"ruuurrrrrrrrr", 12},           // three unreported within the run
      {"r.....rrrrrrr", 12},           // exactly 30 s without a reading
      {"r......rrrrrrrrrrrr", never},  // 35 s: the new span is 55 s long
      {"r......rrrrrrrrrrrrr", 19},    // and 60 s here
      {"ruuuuuurrrrrrrrrrrr", never},  // unreported readings do not hold a span open
  };
  for (const auto& [letters, postsAt] : rows) {
    Readings readings;
    auto posted = never;
    Date now = start;
    for (std::size_t at = 0; at < letters.size(); ++at, now += 5s) {
      const auto verdict = letters[at] == 'r'   ? Case::notProtected
                           : letters[at] == 'g' ? Case::isProtected
                                                : Case::notReported;
      if (letters[at] != '.' && readings.read(verdict, now) && posted == never) posted = at;
    }
    EXPECT_EQ(posted, postsAt) << letters;
  }
}

TEST(RedNotificationGate, CountsOnlyThePartOfASpanWithinTheLastFiveMinutes) {
  struct Row {
    RedSpan closed;
    std::chrono::milliseconds running;
    bool posts;
  };
  const Date now = start;
  const Row rows[] = {
      {{now - 340s, now - 260s}, 20s, true},
      {{now - 340s, now - 260s - 1ms}, 20s, false},
      {{now - 400s, now - 300s - 1ms}, 60s, true},
      {{now - 100s, now + 1ms}, 59s, false},  // the clock was set back since
      {{now - 10s, now - 100s}, 60s, true},   // no span at all
  };
  for (const auto& row : rows) {
    const RedSpan running{now - row.running, now};
    const auto outcome =
        RedNotificationGate::evaluate({Case::notProtected}, std::nullopt, {row.closed}, running, now);
    EXPECT_EQ(outcome.post, row.posts) << (now - row.closed.end).count();
  }
}

TEST(RedNotificationGate, RemindsAtMostDailyWhileItLasts) {
  Readings readings;
  Date now = start;
  for (; now < start + 60s + 24h; now += 5s) readings.read(Case::notProtected, now);
  EXPECT_EQ(readings.posts, 1);
  EXPECT_TRUE(readings.read(Case::notProtected, now)) << "a day to the second after the first";
}

TEST(RedNotificationGate, ForgetsItsPostAfterAnHourThatIsNotRed) {
  struct Row {
    Case verdict;
    std::chrono::milliseconds sincePost;
    bool forgets;
  };
  const Row rows[] = {
      {Case::isProtected, 1h, true},      {Case::isProtected, 1h - 1ms, false},
      {Case::protectedWithOff, 1h, true}, {Case::needsAttention, 1h, true},
      {Case::notReported, 2h, false},     {Case::notProtected, 2h, false},
      {Case::isProtected, -1ms, true},  // the clock was set back
  };
  for (const auto& row : rows) {
    const auto outcome =
        RedNotificationGate::evaluate({row.verdict}, start - row.sincePost, {}, std::nullopt, start);
    EXPECT_EQ(outcome.lastPostedAt, row.forgets ? std::nullopt : std::optional(start - row.sincePost))
        << row.sincePost.count();
  }
}

TEST(RedNotificationGate, AClockSetBackAllowsAPostAndDropsFutureSpans) {
  const RedSpan running{start - 60s, start};
  for (const auto postedAt : {start + 1ms, Date::max(), Date::min(), start - 24h}) {
    const auto outcome = RedNotificationGate::evaluate({Case::notProtected}, postedAt, {}, running, start);
    EXPECT_EQ(outcome, (RedNotificationGate::Outcome{true, start, {}, std::nullopt}));
  }
  const Date earlier = start - 1ms;
  const auto outcome =
      RedNotificationGate::evaluate({Case::notProtected}, std::nullopt, {}, running, earlier);
  EXPECT_EQ(outcome, (RedNotificationGate::Outcome{false, std::nullopt, {}, RedSpan{earlier, earlier}}));
}

}  // namespace
}  // namespace ostrel
