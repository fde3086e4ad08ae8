#include "Tests/Fakes/FakeNetworkPreferences.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace ostrel {

void FakeNetworkPreferences::loadTransparentProxies(std::function<void(TransparentProxies)> completion) {
  ++proxyLoads;
  answer([this, completion = std::move(completion)] { completion(transparentProxies); });
}

void FakeNetworkPreferences::loadContentFilter(std::function<void(ContentFilter)> completion) {
  ++filterLoads;
  answer([this, completion = std::move(completion)] { completion(contentFilter); });
}

void FakeNetworkPreferences::answer(std::function<void()> completion) {
  if (!isDeferred) return completion();
  deferredAnswers_.push_back(std::move(completion));
}

void FakeNetworkPreferences::completeNext() {
  if (deferredAnswers_.empty()) {
    ADD_FAILURE() << "no answer is due";
    return;
  }
  const auto completion = std::move(deferredAnswers_.front());
  deferredAnswers_.pop_front();
  completion();
}

}  // namespace ostrel
