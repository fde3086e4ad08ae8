#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <set>
#include <utility>

#include "Platform/Files.hpp"

namespace ostrel {

/// Files in memory, all of one age; "/" alone exists at first. For one thread. An error that is set meets
/// every call of its kind.
class FakeFiles final : public Files {
 public:
  struct File {
    std::string bytes;
    bool isExecutable = false;
    FileStamp stamp = {};
  };

  bool exists(const std::string& path) const override {
    return files.contains(path) || folders.contains(path);
  }

  bool isExecutableFile(const std::string& path) const override {
    const auto file = files.find(path);
    return file != files.end() && file->second.isExecutable;
  }

  std::expected<std::string, PlatformError> read(const std::string& path) const override {
    ++reads[path];
    if (readError) return std::unexpected(*readError);
    if (folders.contains(path)) return failure(EISDIR);
    if (const auto file = files.find(path); file != files.end()) return file->second.bytes;
    return failure(ENOENT);
  }

  std::expected<void, PlatformError> writeAtomically(const std::string& path,
                                                     std::string_view bytes) override {
    if (writeError) return std::unexpected(*writeError);
    if (folders.contains(path)) return failure(EISDIR);
    if (const auto above = parent(path); !above.empty() && !folders.contains(above)) return failure(ENOENT);
    replace(path, std::string(bytes));
    return {};
  }

  std::expected<void, PlatformError> createPrivately(const std::string& path,
                                                     std::string_view bytes) override {
    if (exists(path)) return failure(EEXIST);
    return writeAtomically(path, bytes);
  }

  std::expected<void, PlatformError> makeFolders(const std::string& path) override {
    for (auto folder = path; !folder.empty(); folder = parent(folder)) {
      if (files.contains(folder)) return failure(ENOTDIR);
    }
    for (auto folder = path; !folder.empty(); folder = parent(folder)) folders.insert(folder);
    return {};
  }

  std::expected<void, PlatformError> remove(const std::string& path) override {
    if (folders.contains(path)) return failure(EISDIR);
    files.erase(path);
    return {};
  }

  std::optional<FileStamp> stamp(const std::string& path) const override {
    const auto file = files.find(path);
    return file == files.end() ? std::nullopt : std::optional(file->second.stamp);
  }

  /// Puts a file there, with the folders above it.
  void put(const std::string& path, std::string bytes) {
    for (auto folder = parent(path); !folder.empty(); folder = parent(folder)) folders.insert(folder);
    if (folders.contains(path)) ADD_FAILURE() << "a folder is in the place of " << path;
    replace(path, std::move(bytes));
  }

  void putExecutable(const std::string& path) {
    put(path, "program");
    files[path].isExecutable = true;
  }

  std::map<std::string, File> files;
  std::set<std::string> folders;
  mutable std::map<std::string, int> reads;  ///< number of reads by path
  std::optional<PlatformError> readError;
  std::optional<PlatformError> writeError;

 private:
  void replace(const std::string& path, std::string bytes) {
    const auto size = bytes.size();
    const FileStamp stamp{.modified = Date(), .size = size, .inode = ++inodes_, .changed = {}};
    files[path] = {std::move(bytes), false, stamp};
  }

  static std::unexpected<PlatformError> failure(int number) {
    return std::unexpected(PlatformError{posixErrorDomain, number, "errno " + std::to_string(number)});
  }

  static std::string parent(const std::string& path) { return path.substr(0, path.rfind('/')); }

  std::uint64_t inodes_ = 0;
};

}  // namespace ostrel
