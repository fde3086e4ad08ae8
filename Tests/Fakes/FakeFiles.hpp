#pragma once

#include <map>
#include <set>

#include "Platform/Files.hpp"

namespace ostrel {

/// Files in memory, all of one age; "/" alone exists at first. For one thread. An error that is set meets
/// every call of its kind.
class FakeFiles final : public Files {
 public:
  struct File {
    std::string bytes;
    bool isExecutable = false;
  };

  bool exists(const std::string& path) const override;
  bool isExecutableFile(const std::string& path) const override;
  std::expected<std::string, PlatformError> read(const std::string& path) const override;
  std::expected<void, PlatformError> writeAtomically(const std::string& path,
                                                     std::string_view bytes) override;
  std::expected<void, PlatformError> makeFolders(const std::string& path) override;
  std::expected<void, PlatformError> remove(const std::string& path) override;
  std::optional<Date> modificationTime(const std::string& path) const override;

  /// Puts a file there, with the folders above it.
  void put(const std::string& path, std::string bytes);
  void putExecutable(const std::string& path);

  std::map<std::string, File> files;
  std::set<std::string> folders;
  std::optional<PlatformError> readError;
  std::optional<PlatformError> writeError;
};

}  // namespace ostrel
