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

TEST(StandardStreams, WritesAllToASlowReaderOfANonBlockingStream) {
  auto pipe = makePipe().value();
  ::fcntl(pipe.writing.number(), F_SETFL, O_NONBLOCK);
  PosixStandardStreams streams;
  const std::string text(1000000, 'x');
  std::string received;
  std::jthread reader([&] {
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(pipe.reading.number(), buffer, sizeof buffer)) > 0;) {
      received.append(buffer, static_cast<std::size_t>(count));
    }
  });
  const Descriptor before(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 10));
  ::dup2(pipe.writing.number(), STDOUT_FILENO);
  streams.writeOutput(text);
  ::dup2(before.number(), STDOUT_FILENO);
  (void)pipe.writing.close();
  reader.join();
  EXPECT_EQ(received, text);
}

TEST(StandardStreamsDeathTest, AReaderThatNeverReadsBlocksNothing) {
  const auto fill = [] {
    auto pipe = makePipe().value();
    PosixStandardStreams streams;
    ::dup2(pipe.writing.number(), STDOUT_FILENO);
    ::alarm(30);
    for (int i = 0; i < 2; ++i) streams.writeOutput(std::string(100000, 'x'));
    std::_Exit(0);
  };
  EXPECT_EXIT(fill(), testing::ExitedWithCode(0), "");
}

TEST(StandardStreamsDeathTest, ALogEntryIsOneLineWhateverItsText) {
  const auto log = [] {
    PosixLog().line("helper said\n12:00 forged\r");
    std::_Exit(0);
  };
  EXPECT_EXIT(log(), testing::ExitedWithCode(0), "^helper said 12:00 forged \n$");
}

TEST(StandardStreamsDeathTest, ClosedStreamsAndClosedReadersDoNoHarm) {
  const auto runBare = [] {
    for (const int number : {0, 1, 2}) ::close(number);
    PosixStandardStreams streams;
    const Descriptor first(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    auto pipe = makePipe().value();
    (void)pipe.reading.close();
    ::dup2(pipe.writing.number(), STDOUT_FILENO);
    streams.writeOutput("unread");
    std::_Exit(first.number() > STDERR_FILENO ? 0 : 1);
  };
  EXPECT_EXIT(runBare(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ostrel
