#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <csignal>
#include <latch>
#include <semaphore>
#include <thread>

#include "Platform/Posix/PosixBackgroundQueue.hpp"
#include "Tests/Fakes/FakeBackgroundQueue.hpp"

namespace ostrel {
namespace {

TEST(BackgroundQueueContract, RunsUrgentWorkFirstThenByArrival) {
  std::string order;
  std::latch arrived(1);
  std::binary_semaphore done(0);
  FakeBackgroundQueue fake;
  PosixBackgroundQueue real(1);
  const auto submit = [&](BackgroundQueue& queue) {
    const auto mark = [&](char letter) { return [&order, letter] { order += letter; }; };
    queue.run(QualityOfService::utility, mark('c'));
    queue.run(QualityOfService::userInitiated, mark('a'));
    queue.run(QualityOfService::utility, mark('d'));
    queue.run(QualityOfService::userInitiated, mark('b'));
  };
  submit(fake);
  fake.runAll();
  // Blocks the only thread until all other work has arrived.
  real.run(QualityOfService::userInitiated, [&] { arrived.wait(); });
  submit(real);
  real.run(QualityOfService::utility, [&] { done.release(); });
  arrived.count_down();
  done.acquire();
  EXPECT_EQ(order, "abcdabcd");
}

TEST(PosixBackgroundQueue, StartsItsMaximumOfThreadsAndNoMore) {
  std::atomic<int> running = 0;
  std::atomic<int> most = 0;
  std::latch all(3);
  std::latch done(30);
  PosixBackgroundQueue queue(3);
  for (int i = 0; i < 30; ++i) {
    queue.run(QualityOfService::utility, [&, i] {
      const int now = ++running;
      for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
      }
      if (i < 3) all.arrive_and_wait();
      --running;
      done.count_down();
    });
  }
  done.wait();
  EXPECT_EQ(most, 3);
}

TEST(PosixBackgroundQueue, ReportsWhetherItsWorkEndedInTime) {
  using namespace std::chrono_literals;
  std::binary_semaphore mayEnd(0);
  std::latch started(1);
  PosixBackgroundQueue queue(2);
  queue.run(QualityOfService::utility, [&] {
    started.count_down();
    mayEnd.acquire();
  });
  started.wait();
  EXPECT_FALSE(queue.finish(10ms));
  mayEnd.release();
  EXPECT_TRUE(queue.finish(20s));
}

TEST(PosixBackgroundQueue, DestructionDropsWaitingWorkAndAwaitsRunningWork) {
  std::latch started(1);
  std::binary_semaphore mayEnd(0);
  std::atomic<bool> ended = false;
  std::atomic<bool> dropped = true;
  const auto held = std::make_shared<int>();
  {
    PosixBackgroundQueue queue(1);
    queue.run(QualityOfService::utility, [&, held] {
      started.count_down();
      mayEnd.acquire();
      queue.run(QualityOfService::userInitiated, [&dropped] { dropped = false; });
      ended = true;
    });
    queue.run(QualityOfService::utility, [&dropped, held] { dropped = false; });
    started.wait();
    // The waiting work is destroyed only once the destructor has begun, which then waits for the running
    // work.
    std::thread([&, waiting = std::weak_ptr(held)] {
      while (waiting.use_count() > 2) std::this_thread::yield();
      mayEnd.release();
    }).detach();
  }
  EXPECT_TRUE(ended);
  EXPECT_TRUE(dropped);
  EXPECT_EQ(held.use_count(), 1);
}

TEST(PosixBackgroundQueue, ItsThreadsBlockEverySignalButSigchld) {
  sigset_t mask;
  sigemptyset(&mask);
  std::latch done(1);
  PosixBackgroundQueue queue(1);
  queue.run(QualityOfService::utility, [&] {
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    done.count_down();
  });
  done.wait();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) EXPECT_EQ(sigismember(&mask, signal), 1);
  EXPECT_EQ(sigismember(&mask, SIGCHLD), 0);
  sigset_t own;
  pthread_sigmask(SIG_SETMASK, nullptr, &own);
  EXPECT_EQ(sigismember(&own, SIGTERM), 0);
}

}  // namespace
}  // namespace ostrel
