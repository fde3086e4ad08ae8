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

/// The main queue behind one descriptor that an outer loop watches. Tokens may outlive it; threads that post
/// must not.
class PosixMainQueue final : public MainQueue {
 public:
  void post(std::function<void()> work) override;
  [[nodiscard]] ScheduledWork after(std::chrono::milliseconds delay, std::function<void()> work) override;
  [[nodiscard]] ScheduledWork every(std::chrono::milliseconds period, std::function<void()> work) override;

  /// Runs the work whenever the descriptor is readable; the work must read the pending data. The descriptor
  /// must stay open as long as the token lives. Throws std::system_error when the system cannot watch it.
  /// Main thread.
  [[nodiscard]] ScheduledWork watch(int descriptor, std::function<void()> work);

  /// Readable when work is due. Never read it: that would lose the wake-up.
  int descriptor() const { return wake_.number(); }

  /// Runs the due work in the order of its time; work posted meanwhile waits for the next call. Main thread;
  /// may be called from inside the work, as modal alerts do.
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

  // Used on the main thread only. Tokens own the timers; equal times keep the order of insertion.
  std::multimap<Time, std::weak_ptr<Timer>> timers_;
  std::vector<Watch> watches_;

  std::mutex mutex_;  // guards the members below
  std::deque<Post> posts_;
  std::optional<Time> armed_;  // the descriptor is readable from this time on
  WakeDescriptor wake_;
};

}  // namespace ostrel
