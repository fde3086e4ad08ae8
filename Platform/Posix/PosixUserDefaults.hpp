#pragma once

#include <map>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// The settings as one JSON file, read anew at each access and parsed when it has changed. A damaged file is
/// moved aside, to its name with
/// ".damaged", before a fresh one is written; of dates by name those that can be read count. Changes by
/// several processes are all kept.
class PosixUserDefaults final : public UserDefaults {
 public:
  /// Real path of the lock's file.
  PosixUserDefaults(Files& files, std::string path, std::string lockPath);

  std::optional<DefaultsValue> value(const std::string& key) const override;
  [[nodiscard]] std::expected<void, PlatformError> set(const std::string& key, DefaultsValue value) override;
  [[nodiscard]] std::expected<void, PlatformError> remove(const std::string& key) override;

 private:
  Files& files_;
  const std::string path_;
  const std::string lockPath_;
  mutable std::string readBytes_;                            ///< as read last
  mutable std::map<std::string, DefaultsValue> readValues_;  ///< in these bytes
};

}  // namespace ostrel
