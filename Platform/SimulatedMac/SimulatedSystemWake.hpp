#pragma once

#include <utility>

#include "Platform/SimulatedMac/OrdersWatch.hpp"
#include "Platform/SimulatedMac/SimulatedOrders.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// Wakes that are ordered beside those of the machine.
class SimulatedSystemWake final : public SystemWake {
 public:
  SimulatedSystemWake(SystemWake& machines, const SimulatedOrders& orders, OrdersWatch watch)
      : machines_(machines), orders_(orders), watch_(std::move(watch)) {}

  /// A wake that was ordered before the call is past.
  [[nodiscard]] ScheduledWork follow(std::function<void()> woke) override;

 private:
  SystemWake& machines_;
  const SimulatedOrders& orders_;
  const OrdersWatch watch_;
};

}  // namespace ostrel
