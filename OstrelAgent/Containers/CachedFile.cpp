#include "OstrelAgent/Containers/CachedFile.hpp"

namespace ostrel {

bool CachedFile::update(const Files& files) {
  // The stamp is taken before the bytes: a file that is replaced between the two is read again next time.
  const auto stamp = files.stamp(path_);
  const bool isTooLarge = stamp && stamp->size > maxBytes_;
  if (stamp == stamp_ && (!stamp || isTooLarge || bytes_)) return false;
  stamp_ = stamp;
  bytes_.reset();
  if (!stamp || isTooLarge) return true;
  if (auto bytes = files.read(path_)) bytes_ = *std::move(bytes);
  return true;
}

}  // namespace ostrel
