#include "Tests/Fakes/FakeBackgroundQueue.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace ostrel {

void FakeBackgroundQueue::run(QualityOfService quality, std::function<void()> work) {
  (quality == QualityOfService::userInitiated ? urgent_ : other_).push_back(std::move(work));
}

void FakeBackgroundQueue::runNext() {
  auto& waiting = urgent_.empty() ? other_ : urgent_;
  if (waiting.empty()) {
    ADD_FAILURE() << "no background work waits";
    return;
  }
  const auto work = std::move(waiting.front());
  waiting.pop_front();
  work();
}

void FakeBackgroundQueue::runAll() {
  while (countWaiting() > 0) runNext();
}

}  // namespace ostrel
