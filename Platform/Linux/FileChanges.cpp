#include "Platform/Linux/FileChanges.hpp"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

namespace {

namespace fs = std::filesystem;

/// An inotify(7) descriptor that is readable after changes in the folder; none when the system has none left.
Descriptor changesIn(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  Descriptor changes(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  constexpr auto what = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ONLYDIR;
  if (!changes || ::inotify_add_watch(changes.number(), folder.c_str(), what) < 0) return {};
  return changes;
}

/// True when an event concerns the name, or events were lost.
bool tellOf(std::string_view events, const std::string& name) {
  bool isFound = false;
  while (events.size() >= sizeof(inotify_event)) {
    inotify_event event{};
    std::memcpy(&event, events.data(), sizeof event);
    isFound |= (event.mask & IN_Q_OVERFLOW) != 0;
    isFound |= event.len > 0 && name == events.data() + sizeof event;
    events.remove_prefix(sizeof event + event.len);
  }
  return isFound;
}

class Follower {
 public:
  Follower(const fs::path& path, std::function<void()> changed)
      : name_(path.filename()), changed_(std::move(changed)), changes_(changesIn(path.parent_path())) {}

  void start(PosixMainQueue& queue) {
    if (changes_) watch_ = queue.watch(changes_.number(), [this] { take(); });
  }

 private:
  void take() {
    std::array<char, 4096> buffer;
    bool isChanged = false;
    for (ssize_t count = 0; (count = ::read(changes_.number(), buffer.data(), buffer.size())) > 0;) {
      isChanged |= tellOf({buffer.data(), static_cast<std::size_t>(count)}, name_);
    }
    if (isChanged) changed_();
  }

  const std::string name_;
  const std::function<void()> changed_;
  Descriptor changes_;
  ScheduledWork watch_;
};

}  // namespace

ScheduledWork watchFile(PosixMainQueue& mainQueue, const std::string& path, std::function<void()> changed) {
  const auto follower = std::make_shared<Follower>(path, std::move(changed));
  follower->start(mainQueue);
  return follower;
}

}  // namespace ostrel
