#include "SimulatedEndpoint/Orders.hpp"

#include "Platform/Posix/FileLock.hpp"
#include "SimulatedEndpoint/JsonFile.hpp"

namespace ostrel::simulated {

Orders::Orders(Files& files, const HostRoot& root)
    : files_(files),
      path_(root.realPath(simulatedstate::orders)),
      lockPath_(root.realPath(simulatedstate::lock)) {}

Json Orders::all() const {
  auto orders = readJsonFile(files_, path_);
  return orders && orders->is_object() ? *std::move(orders) : Json::object();
}

Json Orders::order(const std::string& name) const {
  const auto orders = all();
  return orders.contains(name) ? orders[name] : Json();
}

std::expected<void, std::string> Orders::give(const std::string& name, const Json& order) const {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  auto orders = all();
  orders[name] = order;
  if (order.is_null()) orders.erase(name);
  return writeJsonFile(files_, path_, orders);
}

std::expected<void, std::string> Orders::clear() const {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  if (auto gone = files_.remove(path_); !gone) return std::unexpected(gone.error().description);
  return {};
}

}  // namespace ostrel::simulated
