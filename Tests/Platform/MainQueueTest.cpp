#include <gtest/gtest.h>
#include <poll.h>

#include <thread>

#include "Platform/Posix/PosixMainQueue.hpp"
#include "Tests/Fakes/FakeMainQueue.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

/// The real queue behind the loop that every shell has.
struct PosixHarness {
  PosixMainQueue queue;

  static void fallBehind(std::chrono::milliseconds duration) { std::this_thread::sleep_for(duration); }
  void turn() { queue.processDueWork(); }

  bool isReadable(std::chrono::milliseconds wait = 0ms) const {
    pollfd watched{queue.descriptor(), POLLIN, 0};
    return ::poll(&watched, 1, static_cast<int>(wait.count())) == 1;
  }

  void elapse(std::chrono::milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    for (auto left = duration; left > 0ms;) {
      if (isReadable(left)) queue.processDueWork();
      left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    }
  }
};

struct FakeHarness {
  FakeClock clock;
  FakeMainQueue queue{clock};

  void elapse(std::chrono::milliseconds duration) { queue.advance(duration); }
  void fallBehind(std::chrono::milliseconds duration) { queue.fallBehind(duration); }
  void turn() { queue.advance(0ms); }
};

template <class Harness>
struct MainQueueContract : testing::Test, Harness {
  std::string order;
  std::function<void()> mark(char letter) {
    return [this, letter] { order += letter; };
  }
};

using Harnesses = testing::Types<PosixHarness, FakeHarness>;
TYPED_TEST_SUITE(MainQueueContract, Harnesses);

TYPED_TEST(MainQueueContract, RunsPostsInOrderAndNeverInsideTheCall) {
  this->queue.post([this] {
    this->queue.post(this->mark('c'));
    this->order += 'a';
  });
  this->queue.post(this->mark('b'));
  EXPECT_EQ(this->order, "");
  this->elapse(5ms);
  EXPECT_EQ(this->order, "abc");
}

TYPED_TEST(MainQueueContract, RunsTimersByDueTimeAndOnce) {
  const auto late = this->queue.after(20ms, this->mark('c'));
  const auto soon = this->queue.after(10ms, this->mark('b'));
  const auto atOnce = this->queue.after(-1h, this->mark('a'));
  const auto never = this->queue.after(std::chrono::milliseconds::max() / 4, this->mark('x'));
  EXPECT_EQ(this->order, "");
  this->elapse(40ms);
  EXPECT_EQ(this->order, "abc");
}

TYPED_TEST(MainQueueContract, TicksOnceForMissedPeriodsUntilItsTokenIsDestroyed) {
  int ticks = 0;
  const auto rare = this->queue.every(1h, [&ticks] { ticks += 100; });
  auto token = this->queue.every(5ms, [&ticks] { ++ticks; });
  this->fallBehind(30ms);
  this->turn();
  EXPECT_EQ(ticks, 1);
  this->elapse(30ms);
  EXPECT_GE(ticks, 2);
  token.reset();
  ticks = 0;
  this->elapse(15ms);
  EXPECT_EQ(ticks, 0);
}

TYPED_TEST(MainQueueContract, ATokenMayBeDestroyedInItsOwnWorkOrInWorkDueAtTheSameTime) {
  ScheduledWork own;
  own = this->queue.every(5ms, [this, &own] {
    own.reset();
    this->order += 'a';
  });
  ScheduledWork other;
  const auto first = this->queue.after(10ms, [&other] { other.reset(); });
  other = this->queue.after(10ms, this->mark('x'));
  this->elapse(40ms);
  EXPECT_EQ(this->order, "a");
}

TYPED_TEST(MainQueueContract, FinishedAndCancelledWorkIsDestroyed) {
  const auto held = std::make_shared<int>();
  const auto ran = this->queue.after(1ms, [held] {});
  auto cancelled = this->queue.after(1h, [held] {});
  cancelled.reset();
  this->queue.post([held] {});
  this->elapse(10ms);
  EXPECT_EQ(held.use_count(), 1);
}

TEST(PosixMainQueue, ATokenMayOutliveTheQueue) {
  ScheduledWork token;
  {
    PosixMainQueue queue;
    token = queue.every(1ms, [] {});
  }
  token.reset();
}

TEST(PosixMainQueue, ItsDescriptorIsReadableOnlyWhileWorkIsDue) {
  PosixHarness harness;
  EXPECT_FALSE(harness.isReadable());
  harness.queue.post([] {});
  EXPECT_TRUE(harness.isReadable(1s));
  harness.queue.processDueWork();
  EXPECT_FALSE(harness.isReadable());
  auto token = harness.queue.after(10ms, [] {});
  EXPECT_TRUE(harness.isReadable(1s));
  token.reset();
  harness.queue.processDueWork();
  EXPECT_FALSE(harness.isReadable(20ms));
}

TEST(PosixMainQueue, ANestedLoopInsideWorkServesWhatIsDueWithoutSpinning) {
  PosixHarness harness;
  std::string order;
  harness.queue.post([&] {
    order += '(';
    harness.queue.post([&order] { order += 'c'; });
    EXPECT_TRUE(harness.isReadable(1s));
    harness.queue.processDueWork();
    EXPECT_FALSE(harness.isReadable());
    order += ')';
  });
  harness.queue.post([&order] { order += 'b'; });
  harness.queue.processDueWork();
  harness.elapse(5ms);
  EXPECT_EQ(order, "(bc)");
  int runs = 0;
  std::function<void()> again = [&] { ++runs, harness.queue.post(again); };
  harness.queue.post(again);
  harness.queue.processDueWork();
  EXPECT_EQ(runs, 1) << "work that posts itself leaves the outer loop its turn";
  EXPECT_TRUE(harness.isReadable(1s));
}

TEST(PosixMainQueue, PostsOfSeveralThreadsAreCompleteAndInOrder) {
  PosixHarness harness;
  constexpr int posts = 2000;
  std::array<int, 4> next{};
  {
    std::vector<std::jthread> threads;
    threads.reserve(next.size());
    for (std::size_t thread = 0; thread < next.size(); ++thread) {
      threads.emplace_back([&harness, &next, thread] {
        for (int i = 0; i < posts; ++i) {
          harness.queue.post([&next, thread, i] {
            if (next[thread] == i) ++next[thread];
          });
        }
      });
    }
    while (next != std::array<int, 4>{posts, posts, posts, posts} && harness.isReadable(5s)) {
      harness.queue.processDueWork();
    }
  }
  EXPECT_EQ(next, (std::array<int, 4>{posts, posts, posts, posts}));
}

}  // namespace
}  // namespace ostrel
