#pragma once

#include <string>
#include <string_view>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Files.hpp"
#include "Platform/UserAccount.hpp"

namespace ostrel {

/// Lets the user trust this Mac's device certificate, which the daemon holds. A copy may be used on another
/// thread.
class DeviceCATrust {
 public:
  struct Outcome {
    enum class Case {
      failed,
      trusted,
      cancelled  ///< the user declined the system's question; nothing to show
    };

    Case kind = Case::failed;
    std::string message = {};  ///< of `failed`: the sentence to show

    bool operator==(const Outcome&) const = default;
  };

  DeviceCATrust(ControlSocket socket, Files& files, ChildProcesses& childProcesses,
                const UserAccount& account);

  /// Asks the daemon, then the user, then the daemon again. Blocks until the user answers.
  Outcome ensureTrusted() const;

 private:
  Outcome write(std::string_view certPEM) const;
  Outcome runTool(const std::string& stagedFile) const;

  ControlSocket socket_;
  Files& files_;
  ChildProcesses& childProcesses_;
  const UserAccount& account_;
};

/// The outcome of a run of the system's security tool, by its exit status and by its output when the user
/// declined.
DeviceCATrust::Outcome outcomeOfSecurityTool(const ChildResult& result);

}  // namespace ostrel
