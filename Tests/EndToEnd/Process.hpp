#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace ostrel {

/// A program under test with pipes at its standard streams. Waits have a deadline; a program that
/// still runs when the object is destroyed is killed.
class Process {
 public:
  /// Variables beside those that every program gets: PATH and the options of sanitizers.
  using Environment = std::map<std::string, std::string>;

  Process(const std::vector<std::string>& command, const Environment& environment,
          std::string_view input = {});
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process();

  pid_t number() const { return process_; }

  /// Writes to standard input; a program that has ended loses it.
  void write(std::string_view text);
  void closeInput();

  /// Waits until standard output holds the text behind all that was found before; a failure when the deadline
  /// comes or the output ends first.
  void awaitOutput(std::string_view text, std::chrono::milliseconds timeout = std::chrono::seconds(20));

  void signal(int number) const;

  /// Reads the streams to their end and waits for the program: its exit status, or minus the signal that
  /// ended it. One that does not end is killed with a failure.
  int end(std::chrono::milliseconds timeout = std::chrono::seconds(20));

  const std::string& output() const { return output_; }
  const std::string& error() const { return error_; }

 private:
  using Deadline = std::chrono::steady_clock::time_point;
  bool read(Deadline deadline);

  pid_t process_ = -1;
  int input_ = -1;
  int streams_[2] = {-1, -1};
  std::string output_;
  std::string error_;
  std::size_t found_ = 0;
};

/// Runs a program on an input to its end.
struct Ran {
  int status = -1;
  std::string output;
  std::string error;
};
Ran run(const std::vector<std::string>& command, const Process::Environment& environment,
        std::string_view input = {});

/// Waits for something to become true, looking often; false after twenty seconds.
template <class Condition>
bool becomesTrue(Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

/// Has the simulated launchd end the menu-bar agent, where it runs one.
Ran bootOutMenuBarAgent(const std::string& hostRoot, const Process::Environment& environment);

/// Numbers of the living processes with that text in their environment.
std::vector<pid_t> processesWith(std::string_view environmentText);

}  // namespace ostrel
