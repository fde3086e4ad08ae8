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
  return failure(ENOENT);
}

std::expected<void, PlatformError> FakeFiles::writeAtomically(const std::string& path,
                                                              std::string_view bytes) {
  if (writeError) return std::unexpected(*writeError);
  if (folders.contains(path)) return failure(EISDIR);
  if (const auto above = parent(path); !above.empty() && !folders.contains(above)) return failure(ENOENT);
  files[path] = {std::string(bytes), false};
  return {};
}

std::expected<void, PlatformError> FakeFiles::makeFolders(const std::string& path) {
  for (auto folder = path; !folder.empty(); folder = parent(folder)) {
    if (files.contains(folder)) return failure(ENOTDIR);
  }
  for (auto folder = path; !folder.empty(); folder = parent(folder)) folders.insert(folder);
  return {};
}

std::expected<void, PlatformError> FakeFiles::remove(const std::string& path) {
  if (folders.contains(path)) return failure(EISDIR);
  files.erase(path);
  return {};
}

std::optional<Date> FakeFiles::modificationTime(const std::string& path) const {
  return exists(path) ? std::optional(Date()) : std::nullopt;
}

void FakeFiles::put(const std::string& path, std::string bytes) {
  for (auto folder = parent(path); !folder.empty(); folder = parent(folder)) folders.insert(folder);
  if (folders.contains(path)) ADD_FAILURE() << "a folder is in the place of " << path;
  files[path] = {std::move(bytes), false};
}

void FakeFiles::putExecutable(const std::string& path) {
  put(path, "program");
  files[path].isExecutable = true;
}

}  // namespace ostrel
