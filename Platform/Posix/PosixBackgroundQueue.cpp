#include "Platform/Posix/PosixBackgroundQueue.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace ostrel {

PosixBackgroundQueue::PosixBackgroundQueue(std::size_t maximumThreads)
    : maximumThreads_(std::max<std::size_t>(maximumThreads, 1)) {
  threads_.reserve(maximumThreads_);
  startThread();
  if (threads_.empty()) throw std::system_error(EAGAIN, std::generic_category(), "pthread_create");
}

PosixBackgroundQueue::~PosixBackgroundQueue() {
  dropWaiting();
  for (const auto thread : threads_) pthread_join(thread, nullptr);
}

bool PosixBackgroundQueue::finish(std::chrono::milliseconds timeout) {
  dropWaiting();
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, timeout, [this] { return serving_ == 0; });
}

void PosixBackgroundQueue::dropWaiting() {
  {
    std::array<Waiting, 2> dropped;  // destroyed after unlocking, since captured objects may use the queue
    const std::lock_guard lock(mutex_);
    ending_ = true;
    std::swap(dropped, waiting_);
  }
  changed_.notify_all();
}

void PosixBackgroundQueue::run(QualityOfService quality, std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    waiting_[quality == QualityOfService::userInitiated ? 0 : 1].push_back(std::move(work));
    if (countWaiting() > idle_ && threads_.size() < maximumThreads_) startThread();
  }
  // Notified after unlocking, else the woken thread would wait for the lock.
  changed_.notify_one();
}

void PosixBackgroundQueue::startThread() {
  // Signals are for the main thread; a new thread inherits its creator's mask. SIGCHLD stays unblocked: it is
  // ignored in the thread that started the child, but blocked there it would wake the main thread.
  sigset_t blocked;
  sigset_t before;
  sigfillset(&blocked);
  sigdelset(&blocked, SIGCHLD);
  pthread_sigmask(SIG_SETMASK, &blocked, &before);
  pthread_t thread{};
  const auto serveQueue = [](void* queue) -> void* {
    static_cast<PosixBackgroundQueue*>(queue)->serve();
    return nullptr;
  };
  // When the system has no thread left, the work waits for one of the pool.
  if (pthread_create(&thread, nullptr, serveQueue, this) == 0) {
    threads_.push_back(thread);
    ++serving_;
    ++idle_;  // counted before the thread runs, so that further work starts no second one
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void PosixBackgroundQueue::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return ending_ || countWaiting() > 0; });
    --idle_;
    if (ending_) break;
    auto work = takeNext();
    lock.unlock();
    work();
    work = nullptr;
    lock.lock();
    ++idle_;
  }
  --serving_;
  changed_.notify_all();
}

std::function<void()> PosixBackgroundQueue::takeNext() {
  auto& waiting = waiting_[waiting_[0].empty() ? 1 : 0];
  auto work = std::move(waiting.front());
  waiting.pop_front();
  return work;
}

}  // namespace ostrel
