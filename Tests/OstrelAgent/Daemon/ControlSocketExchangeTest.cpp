#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <future>
#include <latch>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixUnixSockets.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/Fakes/UnixServer.hpp"

namespace ostrel {
namespace {

using Case = ControlSocketError::Case;

/// A control socket of a Mac beneath a host root that is too deep for an address.
struct ControlSocketExchange : testing::Test {
  ControlSocketExchange() {
    std::filesystem::create_directories(std::filesystem::path(realPath).parent_path());
  }

  std::string map(std::string_view path) const { return folder / std::string(120, 'd') + std::string(path); }

  using Response = std::expected<JsonObject, ControlSocketError>;
  Response ask(UnixSockets& by, const UnixServer::Serve& serve, const ControlSocket::Extra& extra = {}) {
    const UnixServer server(realPath, serve);
    return ask(by, extra);
  }
  Response ask(UnixSockets& by, const ControlSocket::Extra& extra = {}) {
    auto response = ControlSocket(by, files).send("checkin", extra);
    std::filesystem::remove(realPath);
    return response;
  }

  TemporaryFolder folder;
  const std::string realPath = map(ControlSocket::socketPath);
  PosixUnixSockets sockets{[this](std::string_view path) { return map(path); }};
  PosixFiles files{[this](std::string_view path) { return map(path); }};
};

TEST_F(ControlSocketExchange, AnAnswerComesWholeHoweverItIsCut) {
  const auto sized = [](std::size_t size) {
    const std::string start = R"({"ok":true,"a":")";
    return start + std::string(size - start.size() - 3, 'x') + "\"}\n";
  };
  struct Row {
    std::string answer;
    std::size_t piece;
  };
  const Row rows[] = {
      {sized(60), 1},       {sized(4096), 4096},       {sized(8192), 4096},           {sized(8193), 4096},
      {sized(12288), 4095}, {sized(8 << 20), 1 << 20}, {sized(70), std::string::npos}};
  for (const auto& [answer, piece] : rows) {
    std::string request;
    const auto response =
        ask(sockets,
            [&, &bytes = answer, &length = piece](int connection) {
              request = UnixServer::readLine(connection);
              for (std::size_t at = 0; at < bytes.size(); at += std::min(length, bytes.size() - at)) {
                UnixServer::send(connection, bytes.substr(at, length));
              }
              UnixServer::awaitClose(connection);
            },
            {{"reason", "user"}});
    EXPECT_EQ(request, "{\"action\":\"checkin\",\"reason\":\"user\"}\n");
    ASSERT_TRUE(response) << answer.size() << " bytes, error " << static_cast<int>(response.error().kind);
    EXPECT_EQ(response->text("a").value_or("").size(), answer.size() - 19) << answer.size();
  }
}

TEST_F(ControlSocketExchange, TheEndOfTheHostEndsTheWaitForAPeerThatIsSilentOrDrips) {
  for (const auto serve : {UnixServer::awaitClose, UnixServer::drip}) {
    PosixUnixSockets ending{[this](std::string_view path) { return map(path); }};
    std::latch asked(1);
    auto answer = std::async(std::launch::async, [&] {
      return ask(ending, [&](int connection) {
        UnixServer::readLine(connection);
        asked.count_down();
        serve(connection);
      });
    });
    asked.wait();
    ending.endAll();
    const auto detail = answer.get().error().detail;
    EXPECT_TRUE(detail.contains("errno " + std::to_string(ECANCELED))) << detail;
  }
}

TEST_F(ControlSocketExchange, APeerThatClosesAtOnceIsAnErrorAndNoSignal) {
  const auto before = std::signal(SIGPIPE, SIG_DFL);
  const std::string pipe = "write() incomplete (errno " + std::to_string(EPIPE) + ")";
  const std::string reset = "read() errno " + std::to_string(ECONNRESET);
  for (int i = 0; i < 200; ++i) {
    const auto response = ask(sockets, [](int) {});
    ASSERT_FALSE(response);
    // It may close before the request is written, between, or after.
    const auto& error = response.error();
    EXPECT_TRUE(error.detail == pipe || error.detail == reset || error.kind == Case::malformedResponse)
        << error.detail;
  }
  (void)std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace ostrel
