#pragma once

#include <pthread.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

#include "Platform/BackgroundQueue.hpp"

namespace ostrel {

/// A thread pool that starts one thread at once and the others on demand. The destructor drops waiting work
/// and waits for running work.
class PosixBackgroundQueue final : public BackgroundQueue {
 public:
  /// Throws std::system_error when not even one thread can be started.
  explicit PosixBackgroundQueue(std::size_t maximumThreads);
  ~PosixBackgroundQueue() override;

  void run(QualityOfService quality, std::function<void()> work) override;

  /// Drops waiting work and accepts no more; true when the running work ends within that time. Any thread.
  [[nodiscard]] bool finish(std::chrono::milliseconds timeout);

 private:
  using Waiting = std::deque<std::function<void()>>;

  void startThread();
  void serve();
  void dropWaiting();
  std::size_t countWaiting() const { return waiting_[0].size() + waiting_[1].size(); }
  std::function<void()> takeNext();

  const std::size_t maximumThreads_;
  std::mutex mutex_;  // guards the members below
  std::condition_variable changed_;
  std::array<Waiting, 2> waiting_;  // more urgent first
  std::vector<pthread_t> threads_;
  std::size_t idle_ = 0;
  std::size_t serving_ = 0;  ///< running threads
  bool ending_ = false;
};

}  // namespace ostrel
