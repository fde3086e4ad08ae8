#pragma once

#include <map>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// The settings as one JSON file, read at each access and parsed again when its bytes have changed. Before a
/// write a damaged file is renamed to "….damaged". Changes by several processes are all kept.
class PosixUserDefaults final : public UserDefaults {
 public:
  /// Takes the real paths of the settings file and its lock file.
  PosixUserDefaults(Files& files, std::string path, std::string lockPath);

  std::optional<DefaultsValue> value(const std::string& key) const override;
  [[nodiscard]] std::expected<void, PlatformError> set(const std::string& key, DefaultsValue value) override;
  [[nodiscard]] std::expected<void, PlatformError> remove(const std::string& key) override;

 private:
  Files& files_;
  const std::string path_;
  const std::string lockPath_;
  mutable std::string readBytes_;                            ///< as last read
  mutable std::map<std::string, DefaultsValue> readValues_;  ///< parsed from `readBytes_`
};

}  // namespace ostrel
