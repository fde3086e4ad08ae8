#include "SimulatedEndpoint/TextFile.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

namespace ostrel::simulated {

namespace {

constexpr std::size_t maxBytes = 16 * 1024 * 1024;

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string failure(const char* act, const std::string& path, int error) {
  return std::string("cannot ") + act + " " + path + ": " + std::generic_category().message(error);
}

/// Zero, or the errno of the first step that failed.
int writeNewFile(int descriptor, std::string_view text) {
  if (fchmod(descriptor, 0644) != 0) return errno;
  while (!text.empty()) {
    const auto written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

}  // namespace

std::expected<std::optional<std::string>, std::string> readTextFile(const std::string& path) {
  const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rbe"));
  if (!file) {
    if (errno == ENOENT || errno == ENOTDIR) return std::optional<std::string>();
    return std::unexpected(failure("read", path, errno));
  }
  std::string text;
  std::array<char, 16384> block;
  while (const auto size = std::fread(block.data(), 1, block.size(), file.get())) {
    text.append(block.data(), size);
    if (text.size() > maxBytes) return std::unexpected(failure("read", path, EFBIG));
  }
  if (std::ferror(file.get()) != 0) return std::unexpected(failure("read", path, errno));
  return text;
}

std::expected<void, std::string> writeTextFile(const std::string& path, std::string_view text) {
  const auto folder = std::filesystem::path(path).parent_path();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) return std::unexpected(failure("make the folder", folder.string(), error.value()));
  auto temporary = path + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) return std::unexpected(failure("write", path, errno));
  int code = writeNewFile(descriptor, text);
  if (close(descriptor) != 0 && code == 0) code = errno;
  if (code == 0 && std::rename(temporary.c_str(), path.c_str()) != 0) code = errno;
  if (code == 0) return {};
  std::remove(temporary.c_str());
  return std::unexpected(failure("write", path, code));
}

}  // namespace ostrel::simulated
