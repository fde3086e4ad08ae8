#pragma once

#include <utility>

#include "Platform/NetworkPath.hpp"
#include "Platform/SimulatedMac/OrdersWatch.hpp"
#include "Platform/SimulatedMac/SimulatedOrders.hpp"

namespace ostrel {

/// The network path that is ordered; while none is, that of the machine.
class SimulatedNetworkPath final : public NetworkPath {
 public:
  SimulatedNetworkPath(NetworkPath& machines, const SimulatedOrders& orders, OrdersWatch watch)
      : machines_(machines), orders_(orders), watch_(std::move(watch)) {}

  [[nodiscard]] ScheduledWork follow(std::function<void(const NetworkPathUpdate&)> updated) override;

 private:
  NetworkPath& machines_;
  const SimulatedOrders& orders_;
  const OrdersWatch watch_;
};

}  // namespace ostrel
