#include "OstrelAgent/Daemon/DeviceCATrust.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>
#include <utility>

#include "OstrelAgent/Text/AsciiCase.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/RandomUuid.hpp"

namespace ostrel {

namespace {

using Outcome = DeviceCATrust::Outcome;

Outcome failed(std::string message) { return {Outcome::Case::failed, std::move(message)}; }

Outcome failed(const Message& message) { return failed(std::string(message.text())); }

Outcome confirmFailed(const ControlSocketError& error, const Message& operation) {
  return failed(Copy::trustConfirmFailed.with(error.userMessage(operation.text())));
}

/// Removes the file on destruction.
class StagedFile {
 public:
  StagedFile(Files& files, const std::string& path) : files_(files), path_(path) {}
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;
  ~StagedFile() { std::ignore = files_.remove(path_); }

 private:
  Files& files_;
  const std::string& path_;
};

bool tellsCancellation(const std::string& standardError) {
  constexpr std::array<std::string_view, 3> marks = {"canceled by the user", "cancelled by the user",
                                                     "user canceled"};
  return std::ranges::any_of(
      marks, [&](std::string_view mark) { return containsIgnoringCase(standardError, mark); });
}

}  // namespace

DeviceCATrust::DeviceCATrust(ControlSocket socket, Files& files, ChildProcesses& childProcesses,
                             const UserAccount& account)
    : socket_(std::move(socket)), files_(files), childProcesses_(childProcesses), account_(account) {}

Outcome DeviceCATrust::ensureTrusted() const {
  const auto before = socket_.send("catrust");
  if (!before) return confirmFailed(before.error(), Copy::socketOpTrustCertificate);
  if (before->boolean("ca_trusted") == true) return {Outcome::Case::trusted};
  const auto certificate = before->text("ca_cert_pem");
  if (!certificate) return failed(Copy::trustNoCertificate);
  auto written = write(*certificate);
  if (written.kind != Outcome::Case::trusted) return written;
  const auto after = socket_.send("catrust");
  if (!after) return confirmFailed(after.error(), Copy::socketOpConfirmTrust);
  if (after->boolean("ca_trusted") == true) return {Outcome::Case::trusted};
  return failed(Copy::trustStillUntrusted);
}

Outcome DeviceCATrust::write(std::string_view certPEM) const {
  const auto path = account_.temporaryFolder + "/ostrel-device-ca-" + randomUuid() + ".pem";
  const auto staged = files_.createPrivately(path, certPEM);
  if (!staged) return failed(Copy::trustStageFailed.with(staged.error().description));
  const StagedFile stagedFile(files_, path);
  return runTool(path);
}

Outcome DeviceCATrust::runTool(const std::string& stagedFile) const {
  const auto result =
      childProcesses_.run({.executable = "/usr/bin/security",
                           .arguments = {"add-trusted-cert", "-d", "-r", "trustRoot", stagedFile},
                           .output = ChildStream::discarded,
                           .error = ChildStream::captured});
  if (!result) return failed(Copy::trustRunFailed.with(result.error().description));
  return outcomeOfSecurityTool(*result);
}

Outcome outcomeOfSecurityTool(const ChildResult& result) {
  if (result.status == 0) return {Outcome::Case::trusted};
  if (tellsCancellation(result.error)) return {Outcome::Case::cancelled};
  return failed(Copy::trustToolFailed.with(result.status));
}

}  // namespace ostrel
