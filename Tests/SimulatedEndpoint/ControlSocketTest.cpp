#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Platform/Posix/PosixUnixSockets.hpp"
#include "SimulatedEndpoint/DeviceCertificate.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "Tests/SimulatedEndpoint/Programs.hpp"

namespace ostrel::simulated {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// The daemon, once it can be reached.
struct Serving : Process {
  explicit Serving(const Environment& environment) : Process({CONTROL, "serve"}, environment) {
    awaitOutput("Serving at /Library/");
  }
};

/// The daemon over a host root whose socket's path is longer than an address holds.
struct ControlSocketTest : Programs {
  ControlSocketTest() { root = environment["OSTREL_HOST_ROOT"] = root + "/" + std::string(120, 'x'); }

  Serving serve() const { return Serving(environment); }

  std::unique_ptr<UnixSocket> connect() const {
    PosixUnixSockets sockets([this](std::string_view path) { return root + std::string(path); });
    auto socket = sockets.open().value();
    socket->setTimeouts(10s, 10s);
    EXPECT_TRUE(socket->connect(endpointfiles::controlSocket));
    return socket;
  }

  static std::string readAll(UnixSocket& socket) {
    std::string bytes;
    std::array<char, 65536> buffer;
    while (const auto count = socket.read(buffer).value_or(0)) bytes.append(buffer.data(), count);
    return bytes;
  }

  std::string ask(const std::string& request) const {
    const auto socket = connect();
    EXPECT_TRUE(socket->write(request + "\n"));
    return readAll(*socket);
  }

  Json answer(const Json& request) const { return Json::parse(ask(request.dump())); }
  Json reported() const { return Json::parse(status().output); }
};

TEST_F(ControlSocketTest, ServesOneRequestPerConnectionBesideIdleOnes) {
  auto daemon = serve();
  const auto quiet = connect();
  const auto half = connect();
  EXPECT_TRUE(half->write("{\"action\":"));
  EXPECT_EQ(answer({{"action", "status"}}), Json({{"ok", true}, {"enrolled", true}}));
  EXPECT_TRUE(half->write("\"status\"}\n{\"action\":\"status\"}\n"));
  EXPECT_EQ(readAll(*half), "{\"ok\":true,\"enrolled\":true}\n");
  for (const auto* fault : {"", "[]", "\xff", "{\"action\":1}", "{\"action\":\"tea\"}"}) {
    EXPECT_EQ(Json::parse(ask(fault))["ok"], false) << fault;
  }
  EXPECT_EQ(ask(std::string(2 << 20, ' ')), "");
}

TEST_F(ControlSocketTest, EnrollingStoresNoTokenAndShowsInTheNextReport) {
  control({"scenario", "not-enrolled"});
  auto daemon = serve();
  EXPECT_EQ(answer({{"action", "checkin"}})["skipped"], "this device is not enrolled");
  for (const auto* token : {"", "zq_enroll_", "zq_user_secret-secret"}) {
    const auto refused = answer({{"action", "enroll"}, {"enrollment_token", token}});
    EXPECT_EQ(refused["reason"], "invalid_token") << token;
  }
  EXPECT_EQ(reported()["enrolled"], false);
  EXPECT_EQ(answer({{"action", "enroll"}, {"enrollment_token", "zq_enroll_secret-secret-4f21"}})["ok"], true);
  EXPECT_EQ(reported()["token_masked"], "zq_enroll_…4f21");
  EXPECT_EQ(reported()["health"]["credential"]["state"], "ok");
  EXPECT_EQ(answer({{"action", "status"}})["enrolled"], true);
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_symlink() || !entry.is_regular_file()) continue;
    EXPECT_FALSE(contentOf(entry.path()).contains("secret")) << entry.path();
  }
}

TEST_F(ControlSocketTest, ACheckInUpdatesItsTimeUnlessTheServiceIsOffline) {
  auto daemon = serve();
  control({"set", "report.checkin.last_success", "@-2d"});
  const auto before = reported()["checkin"]["last_success"];
  EXPECT_EQ(answer({{"action", "checkin"}, {"reason", "user"}})["checked_in"], true);
  EXPECT_GT(reported()["checkin"]["last_success"], before);
  control({"scenario", "offline"});
  const auto failed = answer({{"action", "checkin"}});
  EXPECT_EQ(failed["checked_in"], false);
  EXPECT_NE(failed["last_error"], "");
  EXPECT_EQ(failed["health"]["verdict"], "protected");
}

TEST_F(ControlSocketTest, AnUpdateLeavesAnExtensionToBeReplaced) {
  control({"scenario", "update-available"});
  auto daemon = serve();
  EXPECT_EQ(answer({{"action", "update"}}), Json({{"ok", true}}));
  EXPECT_EQ(reported()["version"], "4.13.0");
  EXPECT_EQ(reported()["reactivate_version"], "4.13.0");
  EXPECT_EQ(answer({{"action", "update"}})["reason"], "up_to_date");
}

TEST_F(ControlSocketTest, TrustingItsCertificateShowsInTheNextAnswerAndReport) {
  control({"scenario", "trust-pending"});
  auto daemon = serve();
  const auto before = answer({{"action", "catrust"}});
  EXPECT_EQ(before["trust_pending"], true);
  const std::string pem = before["ca_cert_pem"];
  EXPECT_TRUE(isCertificate(pem));
  std::string other = pem;
  std::swap(other[100], other[101]);
  struct Row {
    const char* trust;
    std::string file;
    int status;
    const char* error;
    bool isTrusted;
  };
  const Row rows[] = {
      {"cancel", pem, 1, "canceled by the user", false},
      {"refuse", pem, 1, "denied", false},
      {"accept", "no certificate", 1, "Unknown format", false},
      {"accept", pem.substr(0, 200), 1, "Unknown format", false},
      {"accept", other, 0, "", false},
      {"accept", pem, 0, "", true},
  };
  for (const auto& row : rows) {
    control({"trust", row.trust});
    std::ofstream(place.write("x", "")) << row.file;
    fs::create_directories(root + "/Library/Caches");
    fs::copy_file(place / "x", root + "/Library/Caches/ca.pem", fs::copy_options::overwrite_existing);
    const auto ran = run(root + "/usr/bin/security",
                         {"add-trusted-cert", "-d", "-r", "trustRoot", "/Library/Caches/ca.pem"});
    EXPECT_EQ(ran.status, row.status) << ran.error;
    EXPECT_NE(ran.error.find(row.error), std::string::npos) << ran.error;
    EXPECT_EQ(answer({{"action", "catrust"}})["ca_trusted"], row.isTrusted) << row.file.substr(0, 40);
  }
  EXPECT_EQ(reported()["health"]["verdict"], "protected");
  EXPECT_EQ(answer({{"action", "catrust"}})["ca_cert_pem"], pem);
}

TEST_F(ControlSocketTest, FollowsEachFaultMode) {
  auto daemon = serve();
  const std::string good = "{\"ok\":true,\"enrolled\":true}\n";
  const std::pair<Arguments, std::function<bool(const std::string&)>> rows[] = {
      {{"slow", "50"}, [&](const auto& bytes) { return bytes == good; }},
      {{"torn"}, [&](const auto& bytes) { return bytes == good.substr(0, good.size() / 2); }},
      {{"garbage"}, [](const auto& bytes) { return bytes.ends_with('\n') && !Json::accept(bytes); }},
      {{"array"}, [](const auto& bytes) { return Json::parse(bytes).is_array(); }},
      {{"huge"}, [](const auto& bytes) { return bytes.size() > 8'000'000 && bytes.ends_with("x\"}\n"); }},
      {{"refuse"}, [](const auto& bytes) { return !Json::parse(bytes).contains("reason"); }},
      {{"refuse", "x"}, [](const auto& bytes) { return Json::parse(bytes)["reason"] == "x"; }},
      {{"none"}, [&](const auto& bytes) { return bytes == good; }},
  };
  for (auto [mode, fits] : rows) {
    const auto name = mode.front();
    mode.insert(mode.begin(), "misbehave");
    control(mode);
    EXPECT_TRUE(fits(ask(R"({"action":"status"})"))) << name;
  }
  control({"misbehave", "close-early"});
  EXPECT_EQ(readAll(*connect()), "");
  control({"misbehave", "silent"});
  const auto socket = connect();
  socket->setTimeouts(1s, 1s);
  EXPECT_TRUE(socket->write("{}\n"));
  std::array<char, 1> buffer;
  EXPECT_EQ(socket->read(buffer).error().value, EAGAIN);
  for (const Arguments& fault : {Arguments{}, {"tea"}, {"slow"}, {"slow", "-1"}, {"torn", "1"}}) {
    auto arguments = fault;
    arguments.insert(arguments.begin(), "misbehave");
    EXPECT_EQ(run(CONTROL, arguments).status, 2);
  }
}

TEST_F(ControlSocketTest, OneDaemonServesAndLeavesNoSocketUnlessItIsKilled) {
  const auto socket = root + endpointfiles::controlSocket;
  auto killed = serve();
  const auto second = run(CONTROL, {"serve"});
  EXPECT_EQ(second.status, 1);
  EXPECT_NE(second.error.find(std::to_string(killed.number())), std::string::npos) << second.error;
  killed.signal(SIGKILL);
  EXPECT_EQ(killed.end(), -SIGKILL);
  EXPECT_TRUE(fs::is_socket(socket));
  for (const int signal : {SIGTERM, SIGINT}) {
    auto daemon = serve();
    EXPECT_EQ(answer({{"action", "status"}})["ok"], true);
    const auto open = connect();
    daemon.signal(signal);
    EXPECT_EQ(daemon.end(), 0);
    EXPECT_FALSE(fs::exists(socket));
  }
  std::ofstream(socket) << "a file of somebody else";
  EXPECT_EQ(run(CONTROL, {"serve"}).status, 1);
  EXPECT_TRUE(fs::is_regular_file(socket));
}

}  // namespace
}  // namespace ostrel::simulated
