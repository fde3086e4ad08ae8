#pragma once

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
  const Files& files_;
};

}  // namespace ostrel
