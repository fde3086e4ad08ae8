#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Date.hpp"
#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Identifies one version of a file: while the stamp is equal, so are the bytes.
struct FileStamp {
  Date modified;
  std::uint64_t size = 0;  ///< bytes
  std::uint64_t inode = 0;
  std::pair<std::int64_t, std::int64_t> changed;  ///< seconds and nanoseconds since 1970

  bool operator==(const FileStamp&) const = default;
};

/// The file system, by absolute paths (FileManager). Links are followed. Any thread; calls block.
class Files {
 public:
  virtual ~Files() = default;

  /// True when the path exists.
  virtual bool exists(const std::string& path) const = 0;

  /// True when the path is a regular file that this user may execute.
  virtual bool isExecutableFile(const std::string& path) const = 0;

  /// Reads all bytes of a file.
  [[nodiscard]] virtual std::expected<std::string, PlatformError> read(const std::string& path) const = 0;

  /// Replaces the file atomically; on failure the old file stays unchanged.
  [[nodiscard]] virtual std::expected<void, PlatformError> writeAtomically(const std::string& path,
                                                                           std::string_view bytes) = 0;

  /// Creates a file that only this user may read and write; fails when the path exists.
  [[nodiscard]] virtual std::expected<void, PlatformError> createPrivately(const std::string& path,
                                                                           std::string_view bytes) = 0;

  /// Creates a folder with its missing parents; succeeds when it exists.
  [[nodiscard]] virtual std::expected<void, PlatformError> makeFolders(const std::string& path) = 0;

  /// Removes a file; succeeds when it is missing.
  [[nodiscard]] virtual std::expected<void, PlatformError> remove(const std::string& path) = 0;

  /// The stamp of a regular file, or nullopt when there is none.
  virtual std::optional<FileStamp> stamp(const std::string& path) const = 0;
};

}  // namespace ostrel
