#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "Platform/MainQueue.hpp"
#include "Platform/Posix/WakeDescriptor.hpp"

namespace ostrel {

/// The main queue on one descriptor, for any outer loop to watch. Tokens may outlive it; its posters must
/// not.
class PosixMainQueue final : public MainQueue {
 public:
  void post(std::function<void()> work) override;
  [[nodiscard]] ScheduledWork after(std::chrono::milliseconds delay, std::function<void()> work) override;
  [[nodiscard]] ScheduledWork every(std::chrono::milliseconds period, std::function<void()> work) override;

  /// Runs the work whenever the descriptor is readable; it must then read what has come. The descriptor stays
  /// open as long as the token lives. Throws std::system_error when the system cannot watch it. Main thread.
  [[nodiscard]] ScheduledWork watch(int descriptor, std::function<void()> work);

  /// Readable when work is due. Only to be watched: reading it would lose the wake.
  int descriptor() const { return wake_.number(); }

  /// Runs what is due, in the order of its time; what that work posts waits for the next call. Main thread;
  /// may be called again from inside the work, as a modal question does.
  void processDueWork();

 private:
  using Time = std::chrono::steady_clock::time_point;

  struct Timer {
    std::chrono::milliseconds period;  ///< zero for work that runs once
    std::function<void()> work;
  };

  struct Watch {
    int descriptor;
    std::weak_ptr<std::function<void()>> work;
  };

  struct Post {
    Time time;
    std::function<void()> work;
  };

  ScheduledWork schedule(Time due, std::shared_ptr<Timer> timer);
  void forgetWatches();
  void runReadable();
  bool runTimerDue(Time limit);
  void runOldestPost();
  std::size_t countPosts();
  std::optional<Time> oldestPostTime();
  void armNoLaterThan(Time due);
  void armForNext();

  // Main thread. The tokens own the timers; equal times keep the order of insertion.
  std::multimap<Time, std::weak_ptr<Timer>> timers_;
  std::vector<Watch> watches_;

  std::mutex mutex_;  // guards what follows
  std::deque<Post> posts_;
  std::optional<Time> armed_;  // once past, the descriptor is readable
  WakeDescriptor wake_;
};

}  // namespace ostrel
