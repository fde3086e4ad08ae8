#pragma once

#include <atomic>

#include "Platform/Files.hpp"
#include "Platform/Posix/PathMap.hpp"

namespace ostrel {

/// The file system. Only regular files can be read; written files get mode 0600.
class PosixFiles final : public Files {
 public:
  explicit PosixFiles(PathMap realPath);

  bool exists(const std::string& path) const override;
  bool isExecutableFile(const std::string& path) const override;
  [[nodiscard]] std::expected<std::string, PlatformError> read(const std::string& path) const override;
  [[nodiscard]] std::expected<void, PlatformError> writeAtomically(const std::string& path,
                                                                   std::string_view bytes) override;
  [[nodiscard]] std::expected<void, PlatformError> createPrivately(const std::string& path,
                                                                   std::string_view bytes) override;
  [[nodiscard]] std::expected<void, PlatformError> makeFolders(const std::string& path) override;
  [[nodiscard]] std::expected<void, PlatformError> remove(const std::string& path) override;
  std::optional<FileStamp> stamp(const std::string& path) const override;

 private:
  const PathMap realPath_;
  std::atomic<unsigned> temporaries_ = 0;
};

}  // namespace ostrel
