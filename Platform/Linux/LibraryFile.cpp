#include "Platform/Posix/LibraryFile.hpp"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

namespace {

constexpr const char* incomplete = "the file is incomplete";

/// Fills the items from that place of the file on; false when the file ends before.
template <class Item>
bool readAt(const Descriptor& file, std::uint64_t place, std::vector<Item>& items) {
  const auto size = items.size() * sizeof(Item);
  return ::pread(file.number(), items.data(), size, static_cast<off_t>(place)) == static_cast<ssize_t>(size);
}

}  // namespace

// The loader maps a file without a look at its length, and what is beyond the end kills the process.
std::optional<std::string> faultOfLibraryFile(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status = {};
  if (file.number() < 0 || ::fstat(file.number(), &status) != 0) return std::strerror(errno);
  if (!S_ISREG(status.st_mode)) return "it is no file";
  const auto size = static_cast<std::uint64_t>(status.st_size);
  std::vector<ElfW(Ehdr)> headers(1);
  if (!readAt(file, 0, headers)) return incomplete;
  const auto& header = headers.front();
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return "the file is no library";
  const auto endsBeyond = [size](std::uint64_t place, std::uint64_t length) {
    return place > size || length > size - place;
  };
  if (endsBeyond(header.e_shoff, std::uint64_t{header.e_shnum} * header.e_shentsize)) return incomplete;
  std::vector<ElfW(Phdr)> segments(header.e_phnum);
  if (!readAt(file, header.e_phoff, segments)) return incomplete;
  for (const auto& segment : segments) {
    if (segment.p_type == PT_LOAD && endsBeyond(segment.p_offset, segment.p_filesz)) return incomplete;
  }
  return std::nullopt;
}

}  // namespace ostrel
