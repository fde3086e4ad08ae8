#include "Tests/Soak/SoakFigures.hpp"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace ostrel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t growthAllowedKiB = 512;

std::size_t countEntries(const fs::path& folder) {
  std::error_code error;
  fs::directory_iterator entries(folder, error);
  if (error) return 0;
  std::size_t count = 0;
  while (entries != fs::directory_iterator()) {
    ++count;
    entries.increment(error);
    if (error) break;
  }
  return count;
}

/// Each thread has children of its own (proc(5), task/children).
std::size_t countChildren(const fs::path& process) {
  std::size_t count = 0;
  std::error_code error;
  for (const auto& thread : fs::directory_iterator(process / "task", error)) {
    std::ifstream children(thread.path() / "children");
    count += static_cast<std::size_t>(
        std::distance(std::istream_iterator<pid_t>(children), std::istream_iterator<pid_t>()));
  }
  return count;
}

std::size_t residentKiB(const fs::path& process) {
  std::ifstream status(process / "statm");
  std::size_t size = 0;
  std::size_t resident = 0;
  status >> size >> resident;
  return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / 1024;
}

std::string cell(auto value, std::size_t width) {
  const auto text = std::to_string(value);
  return " " + std::string(width - std::min(width, text.size()), ' ') + text + " |";
}

std::string row(const std::string& name, const SoakFigures& figures) {
  return "| " + name + " |" + cell(figures.refreshes, 9) + cell(figures.time.count(), 8) +
         cell(figures.descriptors, 11) + cell(figures.threads, 7) + cell(figures.children, 8) +
         cell(figures.residentKiB, 7) + "\n";
}

}  // namespace

SoakFigures SoakFigures::of(pid_t process) {
  const auto folder = fs::path("/proc") / std::to_string(process);
  SoakFigures figures;
  figures.descriptors = countEntries(folder / "fd");
  figures.threads = countEntries(folder / "task");
  figures.children = countChildren(folder);
  figures.residentKiB = ostrel::residentKiB(folder);
  return figures;
}

std::string SoakRun::table() const {
  std::string table =
      "| after       | refreshes | time, ms | descriptors | threads | children | RSS KiB |\n"
      "|---|---|---|---|---|---|---|\n" +
      row("the warm-up", warm);
  for (std::size_t i = 0; i < quarters.size(); ++i)
    table += row("quarter " + std::to_string(i + 1) + "  ", quarters[i]);
  return table;
}

std::optional<std::string> SoakRun::fault() const {
  if (quarters.size() != 4) return "the run did not come to its end";
  const auto& end = quarters.back();
  const auto differ = [](const char* what, std::size_t before, std::size_t after) {
    return std::string(what) + " were " + std::to_string(before) + " after the warm-up and are " +
           std::to_string(after) + " at the end";
  };
  if (end.descriptors != warm.descriptors) return differ("descriptors", warm.descriptors, end.descriptors);
  if (end.threads != warm.threads) return differ("threads", warm.threads, end.threads);
  if (end.children != warm.children) return differ("children", warm.children, end.children);
  if (end.residentKiB <= quarters[1].residentKiB + growthAllowedKiB) return std::nullopt;
  return "memory has grown by " + std::to_string(end.residentKiB - quarters[1].residentKiB) +
         " KiB from the second quarter to the last";
}

int SoakClock::nextRefreshes() const {
  if (taken_ == 0) return all_ / 10;
  return taken_ <= 4 ? all_ * taken_ / 4 : all_ + 1;
}

void SoakClock::take() {
  auto figures = SoakFigures::of(process_);
  figures.refreshes = nextRefreshes();
  figures.time =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_);
  if (taken_++ == 0) {
    run_.warm = figures;
  } else {
    run_.quarters.push_back(figures);
  }
}

}  // namespace ostrel
