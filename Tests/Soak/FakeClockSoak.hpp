#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/MenuBar/MenuBarController.hpp"
#include "Tests/Fakes/FakeHost.hpp"
#include "Tests/Soak/MinIntervalCheck.hpp"
#include "Tests/Soak/Random.hpp"

namespace ostrel {

/// Runs the menu-bar role through random days on a host of fakes: answers and failures of helper and daemon,
/// clicks, networks, sleep, clocks that are set, notifications that are refused.
class FakeClockSoak {
 public:
  explicit FakeClockSoak(std::uint64_t seed);

  /// Runs until that many status runs were made in all; a sentence when a rule was broken.
  std::optional<std::string> run(int refreshes);

  int refreshes() const { return refreshes_; }

 private:
  /// The user's clock, which may be set; timers follow the host's.
  class WallClock final : public Clock {
   public:
    explicit WallClock(const Clock& steady) : steady_(steady) {}
    Date now() const override { return steady_.now() + offset; }

    std::chrono::milliseconds offset{0};

   private:
    const Clock& steady_;
  };

  void step();
  void letTimePass();
  void runSomeWork();
  void changeNetwork();
  void changeNetworkExtension();
  void sleepOrSetClock();
  void changeNotifications();
  void forgetSettings();
  void usePanel();
  void pressButton(const std::vector<PanelButton>& buttons);
  void changeAnswers();
  void settle();
  void runAllWork();
  NetworkExtensionState extension() const;
  bool isWorkLeft() const;
  void take();
  void takeRequests(Date arrived);
  void fillAnswers();
  void takeNotifications();
  void expect(bool holds, const std::string& rule);
  void expectRest();

  Random random_;
  FakeHost host_;
  WallClock wall_{host_.clock};
  FakeChildProcesses::Result status_;
  bool isHanging_ = false;
  NetworkExtensionState settledExtension_;  ///< as it was when all was at rest
  MinIntervalCheck nudges_;
  MinIntervalCheck redNotifications_;
  std::map<std::string, MinIntervalCheck> containerNotifications_;  ///< by title, which names the runtime
  bool hasRecovered_ = false;                                       ///< since the last notification
  std::ptrdiff_t reactivations_ = 0;
  int refreshes_ = 0;
  std::optional<std::string> fault_;
  std::shared_ptr<MenuBarController> controller_;
};

}  // namespace ostrel
