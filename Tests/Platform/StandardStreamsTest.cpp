#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixLog.hpp"
#include "Platform/Posix/PosixStandardStreams.hpp"

namespace ostrel {
namespace {

/// Puts a descriptor in place of a standard stream for one test.
class Redirection {
 public:
  Redirection(int stream, int target) : stream_(stream), before_(::fcntl(stream, F_DUPFD_CLOEXEC, 10)) {
    ::dup2(target, stream);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;
  ~Redirection() { ::dup2(before_.number(), stream_); }

 private:
  int stream_;
  Descriptor before_;
};

std::string readToEnd(int descriptor) {
  std::string all;
  char buffer[4096];
  for (ssize_t count = 0; (count = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
    all.append(buffer, static_cast<std::size_t>(count));
  }
  return all;
}

TEST(StandardStreams, WritesAllToASlowReaderThroughAStreamThatDoesNotBlock) {
  auto pipe = makePipe().value();
  ::fcntl(pipe.writing.number(), F_SETFL, O_NONBLOCK);
  PosixStandardStreams streams;
  const std::string text(1000000, 'x');
  std::string received;
  {
    const std::jthread reader([&] { received = readToEnd(pipe.reading.number()); });
    {
      const Redirection output(STDOUT_FILENO, pipe.writing.number());
      streams.writeOutput(text);
    }
    (void)pipe.writing.close();
  }
  EXPECT_EQ(received, text);
}

TEST(StandardStreams, ALogEntryIsOneLineWhateverItsText) {
  auto pipe = makePipe().value();
  {
    const Redirection error(STDERR_FILENO, pipe.writing.number());
    PosixLog().line("helper said\n12:00 forged\r");
    PosixLog().line("");
  }
  (void)pipe.writing.close();
  EXPECT_EQ(readToEnd(pipe.reading.number()), "helper said 12:00 forged \n\n");
}

TEST(StandardStreamsDeathTest, ClosedStreamsAndReadersThatLeftDoNoHarm) {
  const auto runBare = [] {
    for (const int number : {0, 1, 2}) ::close(number);
    PosixStandardStreams streams;
    const Descriptor first(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    auto pipe = makePipe().value();
    (void)pipe.reading.close();
    ::dup2(pipe.writing.number(), STDOUT_FILENO);
    streams.writeOutput("nobody reads");
    std::_Exit(first.number() > STDERR_FILENO ? 0 : 1);
  };
  EXPECT_EXIT(runBare(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ostrel
