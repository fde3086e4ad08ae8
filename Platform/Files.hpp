#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Date.hpp"
#include "Platform/PlatformError.hpp"

namespace ostrel {

/// The file system, by absolute paths (FileManager). Links are followed. Any thread; calls block.
class Files {
 public:
  virtual ~Files() = default;

  /// True when something is at the path.
  virtual bool exists(const std::string& path) const = 0;

  /// True when a plain file that this user may execute is at the path.
  virtual bool isExecutableFile(const std::string& path) const = 0;

  /// All bytes of a file.
  [[nodiscard]] virtual std::expected<std::string, PlatformError> read(const std::string& path) const = 0;

  /// Replaces the file in one step; on failure the earlier file stays as it was.
  [[nodiscard]] virtual std::expected<void, PlatformError> writeAtomically(const std::string& path,
                                                                           std::string_view bytes) = 0;

  /// Makes a file that only this user may read and write; fails when anything is at the path.
  [[nodiscard]] virtual std::expected<void, PlatformError> createPrivately(const std::string& path,
                                                                           std::string_view bytes) = 0;

  /// Makes a folder with its missing parents; one that is there already is a success.
  [[nodiscard]] virtual std::expected<void, PlatformError> makeFolders(const std::string& path) = 0;

  /// Removes a file; one that is missing is a success.
  [[nodiscard]] virtual std::expected<void, PlatformError> remove(const std::string& path) = 0;

  /// Modification time, or nothing when the file is missing.
  virtual std::optional<Date> modificationTime(const std::string& path) const = 0;
};

}  // namespace ostrel
