#include "Platform/Posix/PosixFiles.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <utility>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

namespace {

std::unexpected<PlatformError> failure(int number) { return std::unexpected(posixError(number)); }

/// Reads to the end whatever the reported size: kernel files report none.
[[nodiscard]] std::expected<std::string, PlatformError> readAll(int descriptor,
                                                                std::size_t expectedSize) try {
  std::string bytes(expectedSize + 1, '\0');
  std::size_t size = 0;
  while (true) {
    if (size == bytes.size()) bytes.resize(2 * size + 4096);
    const auto count = ::read(descriptor, bytes.data() + size, bytes.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return failure(errno);
    size += static_cast<std::size_t>(count);
    // A short read from a regular file with a known size is its end.
    if (count == 0 || (expectedSize > 0 && size < bytes.size())) break;
  }
  bytes.resize(size);
  return bytes;
} catch (const std::bad_alloc&) {
  return failure(ENOMEM);
} catch (const std::length_error&) {
  return failure(EFBIG);
}

/// The target of a link, so that replacing the file keeps the link.
[[nodiscard]] std::expected<std::string, PlatformError> behindLink(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
  std::error_code error;
  auto target = std::filesystem::canonical(path, error);
  if (error) return failure(error.value());
  return target.string();
}

int writeNewFile(Descriptor file, std::string_view bytes) {
  const int error = writeAll(file.number(), bytes);
  return error != 0 ? error : file.close();
}

}  // namespace

PosixFiles::PosixFiles(PathMap realPath) : realPath_(std::move(realPath)) {}

bool PosixFiles::exists(const std::string& path) const {
  struct stat status {};
  return ::stat(realPath_(path).c_str(), &status) == 0;
}

bool PosixFiles::isExecutableFile(const std::string& path) const {
  const auto real = realPath_(path);
  struct stat status {};
  return ::stat(real.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(real.c_str(), X_OK) == 0;
}

std::expected<std::string, PlatformError> PosixFiles::read(const std::string& path) const {
  // Without O_NONBLOCK opening a pipe would block until somebody writes to it.
  const Descriptor file(::open(realPath_(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) return failure(errno);
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) return failure(errno);
  if (S_ISDIR(status.st_mode)) return failure(EISDIR);
  if (!S_ISREG(status.st_mode)) return failure(EINVAL);
  return readAll(file.number(), static_cast<std::size_t>(status.st_size));
}

std::expected<void, PlatformError> PosixFiles::writeAtomically(const std::string& path,
                                                               std::string_view bytes) {
  const auto target = behindLink(realPath_(path));
  if (!target) return std::unexpected(target.error());
  // A short name of its own, since the file's name may have the maximum length.
  std::string temporary;
  Descriptor file;
  do {
    const auto name = ".ostrel-" + std::to_string(::getpid()) + "-" + std::to_string(++temporaries_);
    temporary = target->substr(0, target->rfind('/') + 1) + name;
    file = Descriptor(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  } while (!file && errno == EEXIST);
  if (!file) return failure(errno);
  int error = writeNewFile(std::move(file), bytes);
  if (error == 0 && std::rename(temporary.c_str(), target->c_str()) != 0) error = errno;
  if (error == 0) return {};
  (void)::unlink(temporary.c_str());
  return failure(error);
}

std::expected<void, PlatformError> PosixFiles::createPrivately(const std::string& path,
                                                               std::string_view bytes) {
  const auto real = realPath_(path);
  Descriptor file(::open(real.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file) return failure(errno);
  const int error = writeNewFile(std::move(file), bytes);
  if (error == 0) return {};
  (void)::unlink(real.c_str());
  return failure(error);
}

std::expected<void, PlatformError> PosixFiles::makeFolders(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(realPath_(path), error);
  if (error) return failure(error.value());
  return {};
}

std::expected<void, PlatformError> PosixFiles::remove(const std::string& path) {
  if (::unlink(realPath_(path).c_str()) != 0 && errno != ENOENT) return failure(errno);
  return {};
}

std::optional<FileStamp> PosixFiles::stamp(const std::string& path) const {
  struct stat status {};
  if (::stat(realPath_(path).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  const std::chrono::milliseconds sinceSecond(status.st_mtim.tv_nsec / 1'000'000);
  return FileStamp{.modified = Date(std::chrono::seconds(status.st_mtim.tv_sec) + sinceSecond),
                   .size = static_cast<std::uint64_t>(status.st_size),
                   .inode = status.st_ino,
                   .changed = {status.st_ctim.tv_sec, status.st_ctim.tv_nsec}};
}

}  // namespace ostrel
