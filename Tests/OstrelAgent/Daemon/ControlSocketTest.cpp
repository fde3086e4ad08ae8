#include "OstrelAgent/Daemon/ControlSocket.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>

#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeUnixSockets.hpp"

namespace ostrel {

static void PrintTo(const ControlSocketError& error, std::ostream* stream) {
  *stream << static_cast<int>(error.kind) << " [" << error.detail << "] [" << error.message << "] ["
          << error.reason << "]";
}

namespace {

using namespace std::chrono_literals;
using Case = ControlSocketError::Case;

constexpr const char* silentRefusal =
    "The Ostrel Agent background service refused the request without saying why.";

struct Daemon {
  Daemon() { files.put(std::string(ControlSocket::socketPath), ""); }

  void answer(FakeUnixSockets::Pieces pieces) { sockets.answers.push_back(std::move(pieces)); }

  /// The error of a request, or a failure of the test.
  ControlSocketError errorOf(const ControlSocket::Extra& extra = {}) {
    const auto response = socket.send("checkin", extra);
    if (response) ADD_FAILURE() << "a success";
    for (const auto& connection : sockets.connections) EXPECT_TRUE(connection.isClosed);
    return response ? ControlSocketError() : response.error();
  }

  FakeFiles files;
  FakeUnixSockets sockets;
  ControlSocket socket{sockets, files};
};

TEST(ControlSocket, SendsOneLineOnAConnectionOfItsOwnWithinTwentySeconds) {
  const std::pair<ControlSocket::Extra, std::string> rows[] = {
      {{}, R"({"action":"checkin"})"},
      {{{"reason", "user"}}, R"({"action":"checkin","reason":"user"})"},
      {{{"action", "update"}, {"a", true}, {"n", -7}}, R"({"a":true,"action":"update","n":-7})"},
      {{{"t", "\"ü\n\x01"}}, "{\"action\":\"checkin\",\"t\":\"\\\"ü\\n\\u0001\"}"},
  };
  Daemon daemon;
  for (const auto& [extra, line] : rows) {
    daemon.answer({"{\"ok\":true}\n"});
    EXPECT_TRUE(daemon.socket.send("checkin", extra)) << line;
    const auto& connection = daemon.sockets.connections.back();
    EXPECT_EQ(connection.paths, std::vector{std::string(ControlSocket::socketPath)});
    EXPECT_EQ(connection.writes, std::vector{line + "\n"});
    EXPECT_EQ(connection.receiveTimeout, 20s);
    EXPECT_EQ(connection.sendTimeout, 20s);
    EXPECT_TRUE(connection.isClosed);
  }
  EXPECT_EQ(daemon.sockets.connections.size(), std::size(rows));
}

TEST(ControlSocket, AFailedCallIsReportedWithItsErrnoAndNotRetried) {
  const auto io = [](const std::string& detail) { return ControlSocketError{Case::io, detail}; };
  struct Row {
    std::function<void(Daemon&)> fault;
    ControlSocketError error;
  };
  const Row rows[] = {
      {[](Daemon& d) { d.sockets.openError = {EMFILE}; }, io("socket() errno " + std::to_string(EMFILE))},
      {[](Daemon& d) { d.sockets.connectError = {EACCES}; }, {Case::notAdmin}},
      {[](Daemon& d) { d.sockets.connectError = {EPERM}; }, {Case::notAdmin}},
      {[](Daemon& d) { d.sockets.connectError = {ENOENT}; }, {Case::notInstalled}},
      {[](Daemon& d) { d.sockets.connectError = {ECONNREFUSED}; }, {Case::notInstalled}},
      {[](Daemon& d) { d.sockets.connectError = {EINTR}; }, io("connect() errno " + std::to_string(EINTR))},
      {[](Daemon& d) { d.sockets.writeError = {EPIPE}; },
       io("write() incomplete (errno " + std::to_string(EPIPE) + ")")},
      {[](Daemon& d) { d.sockets.writtenCount = 5; }, io("write() incomplete (errno 0)")},
      {[](Daemon& d) { d.sockets.answers = {{std::unexpected(ErrorNumber{EAGAIN})}}; },
       io("read() errno " + std::to_string(EAGAIN))},
      {[](Daemon& d) {
         d.sockets.answers = {{"{\"ok\":true}", std::unexpected(ErrorNumber{EINTR})}};
       },
       io("read() errno " + std::to_string(EINTR))},
  };
  for (const auto& row : rows) {
    Daemon daemon;
    daemon.answer({"{\"ok\":true}\n"});
    row.fault(daemon);
    EXPECT_EQ(daemon.errorOf(), row.error);
    EXPECT_LE(daemon.sockets.connections.size(), 1U);
  }
  Daemon absent;
  absent.files.files.clear();
  EXPECT_EQ(absent.errorOf(), ControlSocketError{Case::notInstalled});
  EXPECT_TRUE(absent.sockets.connections.empty()) << "no connection is opened without a socket file";
}

TEST(ControlSocket, APathOfUpTo103BytesIsConnectedTo) {
  for (const std::size_t length : {103U, 104U}) {
    Daemon daemon;
    const auto path = "/" + std::string(length - 3, 'p') + "ü";
    daemon.files.put(path, "");
    daemon.answer({"{\"ok\":true}\n"});
    const auto response = ControlSocket(daemon.sockets, daemon.files, path).send("status");
    const auto& connection = daemon.sockets.connections.at(0);
    EXPECT_TRUE(connection.isClosed);
    EXPECT_EQ(response.has_value(), length == 103);
    EXPECT_EQ(connection.paths.size(), length == 103 ? 1U : 0U);
    if (length == 104) {
      EXPECT_EQ(response.error(), (ControlSocketError{Case::io, "socket path too long"}));
    }
  }
}

TEST(ControlSocket, AnUnsuccessfulAnswerIsTheErrorItNames) {
  const std::pair<FakeUnixSockets::Pieces, ControlSocketError> rows[] = {
      {{"{\"ok\":false}\n"}, {Case::requestFailed, "", silentRefusal}},
      {{"{}"}, {Case::requestFailed, "", silentRefusal}},
      {{R"({"ok":"true","error":7,"reason":["x"]})"}, {Case::requestFailed, "", silentRefusal}},
      {{R"({"ok":1,"error":"x","reason":""})"}, {Case::requestFailed, "", "x"}},
      {{R"({"error":"","reason":"busy"})"}, {Case::refused, "", "", "busy"}},
      {{R"({"ok":false,"reason":"busy"})"}, {Case::refused, "", silentRefusal, "busy"}},
      {{R"({"ok":true,"error":"x","ok":null})"}, {Case::requestFailed, "", "x"}},
      {{}, {Case::malformedResponse}},
      {{"\n"}, {Case::malformedResponse}},
      {{"[{\"ok\":true}]\n"}, {Case::malformedResponse}},
      {{"true\n"}, {Case::malformedResponse}},
      {{"{\"ok\":true", ",\"a\":"}, {Case::malformedResponse}},
      {{"{\"ok\":\n", "true}\n"}, {Case::malformedResponse}},
      {{"{\"ok\":true,\"a\":" + std::string(4 << 20, '[')}, {Case::malformedResponse}},
      {{"{\"ok\":true,\"a\":\"\xff\"}\n"}, {Case::malformedResponse}},
  };
  for (const auto& [pieces, error] : rows) {
    Daemon daemon;
    daemon.answer(pieces);
    EXPECT_EQ(daemon.errorOf(), error) << (pieces.empty() ? "" : pieces[0]->substr(0, 40));
  }
}

TEST(ControlSocket, ReadsAnAnswerUntilItsLineEndsOrThePeerCloses) {
  const std::unexpected<ErrorNumber> afterTheEnd(ErrorNumber{ECONNRESET});
  // The first newline is the last byte of a read of 4096 bytes.
  const std::string word(4096 - std::string_view("{\"ok\":true,\"a\":\"\"}\n").size(), 'x');
  const auto whole = "{\"ok\":true,\"a\":\"" + word + "\"}\n";
  const std::pair<FakeUnixSockets::Pieces, std::string> rows[] = {
      {{whole, afterTheEnd}, word},
      {{"{\"ok\":true,", "\"a\":\"" + std::string(9000, 'y'), "\"}\n", afterTheEnd}, std::string(9000, 'y')},
      {{"{\"ok\":true,\"a\":\"" + std::string(1 << 20, 'w') + "\"}\n"}, std::string(1 << 20, 'w')},
      {{"{\n\"ok\":true,\n\"a\":\"z\"}"}, "z"},
  };
  for (const auto& [pieces, text] : rows) {
    Daemon daemon;
    daemon.answer(pieces);
    const auto response = daemon.socket.send("status");
    ASSERT_TRUE(response) << text.substr(0, 10);
    EXPECT_EQ(response->text("a"), text);
  }
}

TEST(ControlSocket, QueriesAreFalseUnlessTheDaemonSaysTrue) {
  const std::pair<FakeUnixSockets::Pieces, bool> rows[] = {
      {{R"({"ok":true,"enrolled":true,"trust_pending":true})"}, true},
      {{R"({"ok":true,"enrolled":false,"trust_pending":false})"}, false},
      {{R"({"ok":true,"enrolled":1,"trust_pending":"true"})"}, false},
      {{R"({"ok":true})"}, false},
      {{R"({"ok":false,"enrolled":true,"trust_pending":true})"}, false},
      {{}, false},
  };
  for (const auto& [pieces, isYes] : rows) {
    Daemon daemon;
    daemon.answer(pieces);
    daemon.answer(pieces);
    EXPECT_EQ(daemon.socket.queryEnrolled(), isYes);
    EXPECT_EQ(daemon.socket.queryTrustPending(), isYes);
    EXPECT_EQ(daemon.sockets.connections[0].writes, std::vector{std::string("{\"action\":\"status\"}\n")});
    EXPECT_EQ(daemon.sockets.connections[1].writes, std::vector{std::string("{\"action\":\"catrust\"}\n")});
  }
}

TEST(ControlSocket, EveryErrorHasItsSentence) {
  const std::pair<ControlSocketError, const char*> rows[] = {
      {{Case::io, "read() errno 35"},
       "Couldn't reach the Ostrel Agent background service (read() errno 35). Try again in a moment."},
      {{Case::requestFailed, "", "No route to 100%@."}, "No route to 100%@."},
      {{Case::refused, "", "Not now.", "busy"}, "Not now."},
      {{Case::notInstalled},
       "Ostrel Agent's background service isn't installed on this Mac yet. Install the Ostrel Agent package, "
       "then reopen this app."},
      {{Case::notAdmin},
       "Only an administrator account can check in. Log in as an admin, or ask your administrator to run "
       "this."},
      {{Case::malformedResponse},
       "The Ostrel Agent background service sent back something this app didn't understand. Try again, or "
       "reinstall the package if this keeps happening."},
      {{Case::requestNotSerialised}, "The request contains characters that can't be sent."},
  };
  for (const auto& [error, sentence] : rows) EXPECT_EQ(error.userMessage("check in"), sentence);
}

TEST(ControlSocket, ARequestThatIsNotUtf8IsADistinctErrorAndNotSent) {
  const ControlSocket::Extra rows[] = {{{"t", "\xff secret"}}, {{"\xc3", true}}, {{"t", "\xed\xa0\x80"}}};
  for (const auto& extra : rows) {
    Daemon daemon;
    daemon.answer({"{\"ok\":true}\n"});
    EXPECT_EQ(daemon.errorOf(extra), ControlSocketError{Case::requestNotSerialised});
    EXPECT_TRUE(daemon.sockets.connections.at(0).writes.empty());
  }
}

TEST(ControlSocket, NoErrorRepeatsTheEnrolmentToken) {
  const std::pair<const char*, ControlSocketError> rows[] = {
      {R"({"error":"token ost_12345 is not known: ost_12345"})",
       {Case::requestFailed, "", "token … is not known: …"}},
      {R"({"error":"ost_1234","reason":"unknown ost_12345"})", {Case::refused, "", "ost_1234", "unknown …"}},
      {"ost_12345", {Case::malformedResponse}},
  };
  for (const auto& [answer, error] : rows) {
    Daemon daemon;
    daemon.answer({answer});
    EXPECT_EQ(daemon.errorOf({{"enrollment_token", "ost_12345"}}), error);
  }
  Daemon daemon;
  daemon.answer({R"({"error":"The token e is short."})"});
  EXPECT_EQ(daemon.errorOf({{"enrollment_token", "e"}}).message,
            "The Ostrel Agent background service refused the request without saying why.");
  daemon.answer({R"({"error":"No token ost_12345."})"});
  EXPECT_EQ(daemon.errorOf({{"enrollment_token", " ost_12345\n"}}).message, "No token ….");
  daemon.answer({R"({"error":"No token ost_\\\"12345."})"});
  EXPECT_EQ(daemon.errorOf({{"enrollment_token", "ost_\"12345"}}).message, "No token ….")
      << "in its escaped form";
}

}  // namespace
}  // namespace ostrel
