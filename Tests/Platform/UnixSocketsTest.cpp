#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <future>
#include <latch>

#include "Platform/Posix/PosixUnixSockets.hpp"
#include "Tests/Fakes/FakeUnixSockets.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/Fakes/UnixServer.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

void nothing(int) {}

/// The errno of a call, 0 when it succeeded.
template <class Value>
int errnoOf(const std::expected<Value, ErrorNumber>& result) {
  return result ? 0 : result.error().value;
}

/// Runs the test as an ordinary user for its lifetime, since the superuser may connect to any socket.
class OrdinaryUser {
 public:
  OrdinaryUser() : before_(::geteuid()) { EXPECT_TRUE(before_ != 0 || ::seteuid(65534) == 0); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() { EXPECT_EQ(::seteuid(before_), 0); }

 private:
  uid_t before_;
};

/// Sockets by the path map of a simulated Mac.
struct PosixUnixSocketsTest : testing::Test {
  int connectTo(const std::string& path) { return errnoOf(sockets.open().value()->connect(path)); }

  std::unique_ptr<UnixSocket> connected() {
    auto socket = sockets.open().value();
    EXPECT_EQ(errnoOf(socket->connect("/socket")), 0);
    return socket;
  }

  TemporaryFolder folder;
  PosixUnixSockets sockets{[this](std::string_view path) { return folder.path() + std::string(path); }};
  std::array<char, 4> buffer{};
};

using UnixSocketsContract = PosixUnixSocketsTest;

TEST_F(UnixSocketsContract, BytesOfThePeerAreReadInOrderUntilItCloses) {
  std::string request;
  const UnixServer server(folder / "socket", [&](int connection) {
    request = UnixServer::readLine(connection);
    UnixServer::send(connection, "answer");
  });
  FakeUnixSockets fake;
  fake.answers = {{"answer"}};
  for (UnixSockets* each : {static_cast<UnixSockets*>(&sockets), static_cast<UnixSockets*>(&fake)}) {
    const auto socket = each->open().value();
    socket->setTimeouts(20s, 20s);
    ASSERT_EQ(errnoOf(socket->connect("/socket")), 0);
    EXPECT_EQ(socket->write("request\n"), 8U);
    std::string answer;
    for (auto count = socket->read(buffer); count.value_or(0) > 0; count = socket->read(buffer)) {
      EXPECT_LE(*count, buffer.size());
      answer.append(buffer.data(), *count);
    }
    EXPECT_EQ(answer, "answer");
    EXPECT_EQ(socket->read(buffer), 0U);
  }
  EXPECT_EQ(request, "request\n");
}

TEST_F(PosixUnixSocketsTest, AFailedConnectionGivesItsErrno) {
  { const UnixServer stopped(folder / "silent", nothing); }
  folder.write("plain", "");
  const UnixServer server(folder / "closed", nothing);
  ::chmod((folder / "closed").c_str(), 0);
  const std::pair<const char*, int> rows[] = {
      {"/missing", ENOENT}, {"/plain", ECONNREFUSED}, {"/plain/below", ENOTDIR}, {"/silent", ECONNREFUSED}};
  for (const auto& [path, number] : rows) EXPECT_EQ(connectTo(path), number) << path;
  const OrdinaryUser user;
  EXPECT_EQ(connectTo("/closed"), EACCES);
}

TEST_F(PosixUnixSocketsTest, APathTooLongForAnAddressIsReachedThroughItsFolder) {
  // 107 bytes are the most that an address holds.
  const auto atLength = [this](std::size_t length) {
    return "/" + std::string(length - folder.path().size() - std::string("//socket").size(), 'd') + "/socket";
  };
  for (const auto& path : {atLength(107), atLength(108), "/" + std::string(200, 'd') + atLength(250)}) {
    const auto real = folder.path() + path;
    EXPECT_EQ(connectTo(path), ENOENT) << real.size();
    std::filesystem::create_directories(std::filesystem::path(real).parent_path());
    EXPECT_EQ(connectTo(path), ENOENT) << real.size();
    const UnixServer server(real, nothing);
    EXPECT_EQ(connectTo(path), 0) << real.size();
  }
  EXPECT_EQ(connectTo("/" + std::string(104, 'n')), ENAMETOOLONG);
}

TEST_F(PosixUnixSocketsTest, OpeningFailsWithoutFreeDescriptors) {
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  auto socket = sockets.open().value();
  // The sanitizer opens a descriptor when it first inspects an object.
  socket->setTimeouts(std::chrono::seconds(1), std::chrono::seconds(1));
  const rlimit none{0, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &none);
  const auto second = sockets.open();
  const auto deep = socket->connect("/" + std::string(200, 'd') + "/socket");
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(errnoOf(second), EMFILE);
  EXPECT_EQ(errnoOf(deep), EMFILE);
}

TEST_F(PosixUnixSocketsTest, AClosedPeerIsAnErrorWithoutASignal) {
  const auto before = std::signal(SIGPIPE, SIG_DFL);
  const UnixServer server(folder / "socket", nothing);
  const auto socket = connected();
  EXPECT_EQ(socket->read(buffer), 0U);
  EXPECT_EQ(errnoOf(socket->write("request")), EPIPE);
  (void)std::signal(SIGPIPE, before);
}

TEST_F(PosixUnixSocketsTest, WaitsNoLongerThanItsTimeouts) {
  std::promise<void> over;
  const UnixServer server(folder / "socket", [&](int) { over.get_future().wait(); });
  const auto socket = connected();
  socket->setTimeouts(20ms, 30ms);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(errnoOf(socket->read(buffer)), EAGAIN);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 19ms);
  const std::string big(8 << 20, 'x');
  EXPECT_LT(socket->write(big).value_or(big.size()), big.size());
  EXPECT_EQ(errnoOf(socket->write(big)), EAGAIN);
  over.set_value();
}

TEST_F(PosixUnixSocketsTest, ShutdownEndsEveryWaitAndRefusesNewSockets) {
  std::atomic<bool> isHeld = false;
  const UnixServer server(folder / "socket", [&](int connection) {
    isHeld = true;
    isHeld.notify_all();
    UnixServer::awaitClose(connection);
  });
  const auto held = connected();
  isHeld.wait(false);
  // The server serves one connection at a time, so these stay in its queue.
  std::vector<std::unique_ptr<UnixSocket>> queued;
  do {
    queued.push_back(sockets.open().value());
    queued.back()->setTimeouts(20s, 1ms);
  } while (errnoOf(queued.back()->connect("/socket")) == 0);
  const auto late = sockets.open().value();
  for (auto* socket : {held.get(), queued.front().get(), late.get()}) socket->setTimeouts(20s, 20s);

  const auto start = std::chrono::steady_clock::now();
  const std::string big(8 << 20, 'x');
  std::latch started(3);
  const auto run = [&](auto call) {
    return std::async(std::launch::async, [&started, call] {
      started.count_down();
      return call();
    });
  };
  std::future<int> waits[] = {run([&] { return errnoOf(held->read(buffer)); }),
                              run([&] { return errnoOf(queued.front()->write(big)); }),
                              run([&] { return errnoOf(late->connect("/socket")); })};
  started.wait();
  sockets.endAll();
  for (auto& wait : waits) EXPECT_EQ(wait.get(), ECANCELED);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
  EXPECT_EQ(errnoOf(late->connect("/socket")), ECANCELED);
  EXPECT_EQ(errnoOf(sockets.open()), ECANCELED);
}

TEST_F(PosixUnixSocketsTest, ASignalInterruptsARead) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};
  ::sigaction(SIGUSR1, &action, &before);
  std::promise<void> over;
  const UnixServer server(folder / "socket", [&](int) { over.get_future().wait(); });
  const auto socket = connected();
  socket->setTimeouts(20s, 20s);
  const auto reader = ::pthread_self();
  std::atomic<bool> isRead = false;
  std::jthread signaller([&] {
    while (!isRead) {
      ::pthread_kill(reader, SIGUSR1);
      std::this_thread::sleep_for(1ms);
    }
  });
  EXPECT_EQ(errnoOf(socket->read(buffer)), EINTR);
  isRead = true;
  signaller.join();
  over.set_value();
  ::sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
}  // namespace ostrel
