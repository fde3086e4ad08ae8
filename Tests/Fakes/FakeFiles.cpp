#include "Tests/Fakes/FakeFiles.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

namespace ostrel {

namespace {

std::unexpected<PlatformError> failure(int number) {
  return std::unexpected(PlatformError{posixErrorDomain, number, "errno " + std::to_string(number)});
}

std::string parent(const std::string& path) { return path.substr(0, path.rfind('/')); }

}  // namespace

/// ENOTDIR below a file, ENOENT below a missing folder.
std::optional<int> FakeFiles::obstacleAbove(const std::string& path) const {
  const auto above = parent(path);
  if (above.empty() || folders.contains(above)) return std::nullopt;
  for (auto folder = above; !folder.empty(); folder = parent(folder)) {
    if (files.contains(folder)) return ENOTDIR;
  }
  return ENOENT;
}

bool FakeFiles::exists(const std::string& path) const {
  return files.contains(path) || folders.contains(path);
}

bool FakeFiles::isExecutableFile(const std::string& path) const {
  const auto file = files.find(path);
  return file != files.end() && file->second.isExecutable;
}

std::expected<std::string, PlatformError> FakeFiles::read(const std::string& path) const {
  if (readError) return std::unexpected(*readError);
  if (folders.contains(path)) return failure(EISDIR);
  if (const auto file = files.find(path); file != files.end()) return file->second.bytes;
  return failure(obstacleAbove(path).value_or(ENOENT));
}

std::expected<void, PlatformError> FakeFiles::writeAtomically(const std::string& path,
                                                              std::string_view bytes) {
  if (writeError) return std::unexpected(*writeError);
  if (folders.contains(path)) return failure(EISDIR);
  if (const auto obstacle = obstacleAbove(path)) return failure(*obstacle);
  files[path] = {std::string(bytes), writeTime, false};
  return {};
}

std::expected<void, PlatformError> FakeFiles::makeFolders(const std::string& path) {
  if (makeFoldersError) return std::unexpected(*makeFoldersError);
  for (auto folder = path; !folder.empty(); folder = parent(folder)) {
    if (files.contains(folder)) return failure(ENOTDIR);
  }
  for (auto folder = path; !folder.empty(); folder = parent(folder)) folders.insert(folder);
  return {};
}

std::expected<void, PlatformError> FakeFiles::remove(const std::string& path) {
  if (removeError) return std::unexpected(*removeError);
  if (folders.contains(path)) return failure(EISDIR);
  if (files.erase(path) == 0 && obstacleAbove(path) == ENOTDIR) return failure(ENOTDIR);
  return {};
}

std::optional<Date> FakeFiles::modificationTime(const std::string& path) const {
  if (const auto file = files.find(path); file != files.end()) return file->second.modified;
  return folders.contains(path) ? std::optional(Date()) : std::nullopt;
}

void FakeFiles::put(const std::string& path, std::string bytes) {
  for (auto folder = parent(path); !folder.empty(); folder = parent(folder)) folders.insert(folder);
  if (folders.contains(path)) ADD_FAILURE() << "a folder is in the place of " << path;
  files[path] = {std::move(bytes), writeTime, false};
}

void FakeFiles::putExecutable(const std::string& path) {
  put(path, "program");
  files[path].isExecutable = true;
}

}  // namespace ostrel
