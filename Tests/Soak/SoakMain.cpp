// Refreshes over and over and reports what has grown: ostrel-soak [--seed N] [REFRESHES] | --real [REFRESHES]

#include <gtest/gtest.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "Tests/Soak/FakeClockSoak.hpp"
#include "Tests/Soak/RealSoak.hpp"

namespace ostrel {

namespace {

constexpr const char* usage = "usage: ostrel-soak [--seed N] [REFRESHES] | --real [REFRESHES]\n";
constexpr int minRefreshes = 40;

struct Options {
  bool isReal = false;
  std::uint64_t seed = std::random_device()();
  int refreshes = 0;
};

template <class Number>
bool read(std::string_view word, Number& number) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  return error == std::errc() && end == word.data() + word.size();
}

std::optional<Options> optionsOf(std::span<char*> words) {
  Options options;
  if (!words.empty() && words[0] == std::string_view("--real")) {
    options.isReal = true;
    words = words.subspan(1);
  } else if (words.size() > 1 && words[0] == std::string_view("--seed")) {
    if (!read(words[1], options.seed)) return std::nullopt;
    words = words.subspan(2);
  }
  options.refreshes = options.isReal ? 3000 : 10000;
  if (words.size() > 1) return std::nullopt;
  if (words.size() == 1 && !read(words[0], options.refreshes)) return std::nullopt;
  return options.refreshes >= minRefreshes ? std::optional(options) : std::nullopt;
}

int fail(const std::string& sentence) {
  std::fprintf(stderr, "ostrel-soak: %s\n", sentence.c_str());
  return 1;
}

int end(const SoakRun& run) {
  std::printf("%s", run.table().c_str());
  const auto fault = run.fault();
  return fault ? fail(*fault) : 0;
}

int soakOnFakeClock(const Options& options) {
  std::printf("%d refreshes on a fake clock, seed %llu\n", options.refreshes,
              static_cast<unsigned long long>(options.seed));
  std::fflush(stdout);
  FakeClockSoak soak(options.seed);
  SoakClock clock(::getpid(), options.refreshes);
  while (clock.nextRefreshes() <= options.refreshes) {
    if (const auto fault = soak.run(clock.nextRefreshes())) return fail(*fault);
    clock.take();
  }
  return end(clock.run());
}

int soakReal(const Options& options) {
  std::printf("%d refreshes of the agent over real children and a real socket\n", options.refreshes);
  std::fflush(stdout);
  return end(soakRealAgent(options.refreshes));
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  using namespace ostrel;
  const auto options =
      optionsOf(std::span(arguments, static_cast<std::size_t>(count)).subspan(count > 0 ? 1 : 0));
  if (!options) {
    std::fputs(usage, stderr);
    return 2;
  }
  try {
    const int status = options->isReal ? soakReal(*options) : soakOnFakeClock(*options);
    // The fakes and the processes under test report what they miss as failures of no test.
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : status;
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
