#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <future>
#include <latch>

#include "OstrelAgent/ControlSocket.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixUnixSockets.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/Fakes/UnixServer.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Case = ControlSocketError::Case;

/// Real sockets that wait a twentieth of a second at most.
class ImpatientSockets final : public UnixSockets {
 public:
  explicit ImpatientSockets(UnixSockets& patient) : patient_(patient) {}

  std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() override {
    auto socket = patient_.open();
    if (!socket) return socket;
    return std::make_unique<Socket>(std::move(*socket));
  }

 private:
  class Socket final : public UnixSocket {
   public:
    explicit Socket(std::unique_ptr<UnixSocket> patient) : patient_(std::move(patient)) {}

    void setTimeouts(std::chrono::milliseconds, std::chrono::milliseconds) override {
      patient_->setTimeouts(50ms, 50ms);
    }
    std::expected<void, ErrorNumber> connect(const std::string& path) override {
      return patient_->connect(path);
    }
    std::expected<std::size_t, ErrorNumber> write(std::string_view bytes) override {
      return patient_->write(bytes);
    }
    std::expected<std::size_t, ErrorNumber> read(std::span<char> buffer) override {
      return patient_->read(buffer);
    }

   private:
    std::unique_ptr<UnixSocket> patient_;
  };

  UnixSockets& patient_;
};

/// A control socket of a Mac beneath a host root that is too deep for an address.
struct ControlSocketExchange : testing::Test {
  ControlSocketExchange() {
    std::filesystem::create_directories(std::filesystem::path(realPath).parent_path());
  }

  std::string map(std::string_view path) const { return folder / std::string(120, 'd') + std::string(path); }

  using Response = std::expected<JsonMembers, ControlSocketError>;
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
  ImpatientSockets impatient{sockets};
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

TEST_F(ControlSocketExchange, WhatIsNoAnswerIsTold) {
  const std::string deep = "{\"ok\":true,\"a\":" + std::string(4 << 20, '[');
  const std::string rows[] = {"",  "{\"ok\":tr", "[{\"ok\":true}]\n", "7\n", "{\"ok\":true,\"a\":\"\xff\"}\n",
                              deep};
  for (const auto& bytes : rows) {
    const auto response = ask(sockets, [&](int connection) {
      UnixServer::readLine(connection);
      UnixServer::send(connection, bytes);
    });
    ASSERT_FALSE(response) << bytes.substr(0, 20);
    EXPECT_EQ(response.error(), ControlSocketError{Case::malformedResponse}) << bytes.substr(0, 20);
  }
}

TEST_F(ControlSocketExchange, APeerThatNeverAnswersOrNeverReadsIsATimeOut) {
  const auto silent = ask(impatient, [](int connection) {
    UnixServer::readLine(connection);
    UnixServer::awaitClose(connection);
  });
  ASSERT_FALSE(silent);
  EXPECT_EQ(silent.error(), (ControlSocketError{Case::io, "read() errno " + std::to_string(EAGAIN)}));
  const auto unread = ask(impatient, UnixServer::awaitClose, {{"big", std::string(8 << 20, 'x')}});
  ASSERT_FALSE(unread);
  EXPECT_TRUE(unread.error().detail.starts_with("write() incomplete (errno ")) << unread.error().detail;
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
    EXPECT_EQ(answer.get().error(),
              (ControlSocketError{Case::io, "read() errno " + std::to_string(ECANCELED)}));
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

TEST_F(ControlSocketExchange, WhereNobodyListensTheServiceIsNotInstalled) {
  EXPECT_EQ(ask(sockets).error(), ControlSocketError{Case::notInstalled}) << "no file";
  std::ofstream(realPath) << "no socket";
  EXPECT_EQ(ask(sockets).error(), ControlSocketError{Case::notInstalled}) << "a plain file";
  {
    const UnixServer server(realPath, [](int) {});
  }
  EXPECT_TRUE(std::filesystem::is_socket(realPath));
  EXPECT_EQ(ask(sockets).error(), ControlSocketError{Case::notInstalled}) << "nobody listens";
}

}  // namespace
}  // namespace ostrel
