#pragma once

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// Network preferences with the answers that the test sets; they come at once, or when the test says so.
class FakeNetworkPreferences final : public NetworkPreferences {
 public:
  void loadTransparentProxies(std::function<void(TransparentProxies)> completion) override {
    answer([this, completion = std::move(completion)] { completion(transparentProxies); });
  }

  void saveTransparentProxy(
      const TransparentProxyConfiguration& configuration,
      std::function<void(std::expected<TransparentProxyConfiguration, PlatformError>)> completion) override {
    answer([this, configuration, completion = std::move(completion)] {
      if (auto error = nextError(proxySaveErrors)) return completion(std::unexpected(*error));
      completion(keep(configuration));
    });
  }

  void startTransparentProxy(const std::string& identifier, std::function<void(Done)> completion) override {
    answer([this, identifier, completion = std::move(completion)] {
      if (startError) return completion(std::unexpected(*startError));
      find(identifier)->connected = true;
      completion({});
    });
  }

  void removeTransparentProxy(const std::string& identifier, std::function<void(Done)> completion) override {
    answer([this, identifier, completion = std::move(completion)] {
      if (removeError) return completion(std::unexpected(*removeError));
      transparentProxies->erase(find(identifier));
      completion({});
    });
  }

  void loadContentFilter(std::function<void(ContentFilter)> completion) override {
    answer([this, completion = std::move(completion)] { completion(contentFilter); });
  }

  void saveContentFilter(const ContentFilterConfiguration& configuration,
                         std::function<void(Done)> completion) override {
    answer([this, configuration, completion = std::move(completion)] {
      if (filterSaveError) return completion(std::unexpected(*filterSaveError));
      contentFilter = configuration;
      completion({});
    });
  }

  std::size_t countDeferred() const { return deferredAnswers_.size(); }

  /// Gives the oldest deferred answer, with the value of this moment.
  void completeNext() {
    const auto completion = std::move(deferredAnswers_.at(0));
    deferredAnswers_.pop_front();
    completion();
  }

  TransparentProxies transparentProxies;
  ContentFilter contentFilter;
  std::deque<PlatformError> proxySaveErrors;  ///< what the next saves fail with
  std::optional<PlatformError> startError;
  std::optional<PlatformError> removeError;
  std::optional<PlatformError> filterSaveError;
  bool isDeferred = false;

 private:
  void answer(std::function<void()> completion) {
    isDeferred ? deferredAnswers_.push_back(std::move(completion)) : completion();
  }

  static std::optional<PlatformError> nextError(std::deque<PlatformError>& errors) {
    if (errors.empty()) return std::nullopt;
    auto error = std::move(errors.front());
    errors.pop_front();
    return error;
  }

  std::vector<TransparentProxyConfiguration>::iterator find(const std::string& identifier) {
    return std::ranges::find(*transparentProxies, identifier, &TransparentProxyConfiguration::identifier);
  }

  TransparentProxyConfiguration keep(TransparentProxyConfiguration configuration) {
    if (configuration.identifier.empty()) {
      configuration.identifier = "new " + std::to_string(transparentProxies->size());
      transparentProxies->push_back(configuration);
    } else {
      *find(configuration.identifier) = configuration;
    }
    return configuration;
  }

  std::deque<std::function<void()>> deferredAnswers_;
};

}  // namespace ostrel
