#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "Platform/Files.hpp"
#include "Platform/NetworkPreferences.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"

namespace ostrel {

/// The network preferences in the files of `simulatedstate`, which several processes may change at once.
/// Completions run on the calling thread, before the call returns.
class SimulatedNetworkPreferences final : public NetworkPreferences {
 public:
  /// Takes the real path of the lock file.
  SimulatedNetworkPreferences(Files& files, const std::string& lockPath);

  void loadTransparentProxies(std::function<void(TransparentProxies)> completion) override;
  void saveTransparentProxy(
      const TransparentProxyConfiguration& configuration,
      std::function<void(std::expected<TransparentProxyConfiguration, PlatformError>)> completion) override;
  void startTransparentProxy(const std::string& identifier, std::function<void(Done)> completion) override;
  void removeTransparentProxy(const std::string& identifier, std::function<void(Done)> completion) override;
  void loadContentFilter(std::function<void(ContentFilter)> completion) override;
  void saveContentFilter(const ContentFilterConfiguration& configuration,
                         std::function<void(Done)> completion) override;

 private:
  /// The parsed contents of a state file, parsed again only when its bytes have changed. Any thread.
  template <class Value>
  class Reading {
   public:
    explicit Reading(Value (*read)(const std::string& bytes)) : read_(read) {}
    Value of(const std::string& bytes);

   private:
    Value (*const read_)(const std::string& bytes);
    std::mutex mutex_;  // guards the members below
    std::optional<std::pair<std::string, Value>> latest_;
  };

  using Change = std::function<Done(std::vector<TransparentProxyConfiguration>&)>;

  TransparentProxies readProxies();

  /// Changes the configurations, unless an override or the change itself fails the call.
  [[nodiscard]] Done changeProxies(FaultyCall call, const Change& change);
  [[nodiscard]] std::expected<void, PlatformError> writeState(const std::string& path,
                                                              const std::string& bytes);

  Files& files_;
  const std::string lockPath_;
  SimulatedOverrides overrides_;
  Reading<TransparentProxies> proxies_;
  Reading<ContentFilter> filter_;
};

}  // namespace ostrel
