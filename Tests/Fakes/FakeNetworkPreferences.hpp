#pragma once

#include <cstddef>
#include <deque>

#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// Network preferences with the answers that the test sets; they come at once, or when the test says so.
class FakeNetworkPreferences final : public NetworkPreferences {
 public:
  void loadTransparentProxies(std::function<void(TransparentProxies)> completion) override;
  void loadContentFilter(std::function<void(ContentFilter)> completion) override;

  /// Gives the oldest deferred answer, with the value of this moment; a failure when none is due.
  void completeNext();

  std::size_t countDeferred() const { return deferredAnswers_.size(); }

  TransparentProxies transparentProxies;
  ContentFilter contentFilter;
  bool isDeferred = false;
  int proxyLoads = 0;
  int filterLoads = 0;

 private:
  void answer(std::function<void()> completion);

  std::deque<std::function<void()>> deferredAnswers_;
};

}  // namespace ostrel
