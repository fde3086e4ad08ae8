#include "SimulatedEndpoint/Overrides.hpp"

#include "Platform/Posix/FileLock.hpp"
#include "SimulatedEndpoint/JsonFile.hpp"

namespace ostrel::simulated {

Overrides::Overrides(Files& files, const HostRoot& root)
    : files_(files),
      path_(root.realPath(simulatedstate::overrides)),
      lockPath_(root.realPath(simulatedstate::lock)) {}

Json Overrides::all() const {
  auto overrides = readJsonFile(files_, path_);
  return overrides && overrides->is_object() ? *std::move(overrides) : Json::object();
}

Json Overrides::order(const std::string& name) const {
  const auto overrides = all();
  return overrides.contains(name) ? overrides[name] : Json();
}

std::expected<void, std::string> Overrides::give(const std::string& name, const Json& order) const {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  auto overrides = all();
  overrides[name] = order;
  if (order.is_null()) overrides.erase(name);
  return writeJsonFile(files_, path_, overrides);
}

std::expected<void, std::string> Overrides::clear() const {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  if (auto gone = files_.remove(path_); !gone) return std::unexpected(gone.error().description);
  return {};
}

}  // namespace ostrel::simulated
