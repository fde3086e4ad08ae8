#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "Platform/Files.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// The network preferences as the files of `simulatedstate`. Completions run on the calling thread, before
/// the call returns.
class SimulatedNetworkPreferences final : public NetworkPreferences {
 public:
  explicit SimulatedNetworkPreferences(const Files& files);

  void loadTransparentProxies(std::function<void(TransparentProxies)> completion) override;
  void loadContentFilter(std::function<void(ContentFilter)> completion) override;

 private:
  /// What a state file says, read anew only when its bytes have changed. Any thread.
  template <class Value>
  class Reading {
   public:
    explicit Reading(Value (*read)(const std::string& bytes)) : read_(read) {}
    Value of(const std::string& bytes);

   private:
    Value (*const read_)(const std::string& bytes);
    std::mutex mutex_;  // guards what follows
    std::optional<std::pair<std::string, Value>> latest_;
  };

  const Files& files_;
  Reading<TransparentProxies> proxies_;
  Reading<ContentFilter> filter_;
};

}  // namespace ostrel
