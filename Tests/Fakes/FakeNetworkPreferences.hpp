#pragma once

#include <deque>
#include <utility>

#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// Network preferences with the answers that the test sets; they come at once, or when the test says so.
class FakeNetworkPreferences final : public NetworkPreferences {
 public:
  void loadTransparentProxies(std::function<void(TransparentProxies)> completion) override {
    answer([this, completion = std::move(completion)] { completion(transparentProxies); });
  }

  void loadContentFilter(std::function<void(ContentFilter)> completion) override {
    answer([this, completion = std::move(completion)] { completion(contentFilter); });
  }

  /// Gives the oldest deferred answer, with the value of this moment.
  void completeNext() {
    const auto completion = std::move(deferredAnswers_.at(0));
    deferredAnswers_.pop_front();
    completion();
  }

  TransparentProxies transparentProxies;
  ContentFilter contentFilter;
  bool isDeferred = false;

 private:
  void answer(std::function<void()> completion) {
    isDeferred ? deferredAnswers_.push_back(std::move(completion)) : completion();
  }

  std::deque<std::function<void()>> deferredAnswers_;
};

}  // namespace ostrel
