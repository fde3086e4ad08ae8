#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Text/Json.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/Date.hpp"

namespace ostrel {

/// The panel's message about a check-in, from the daemon's response.
std::string checkinNotice(const std::expected<JsonObject, ControlSocketError>& answer);

/// The panel's message about diagnostics that were copied to the pasteboard.
std::string diagnosticsNotice(std::int32_t helperStatus);

/// The outcome of sending diagnostics: exactly one of the two is set.
struct DiagnosticsSending {
  std::optional<Date> sentAt;
  std::optional<std::string> error;

  bool operator==(const DiagnosticsSending&) const = default;
};

/// From the helper's exit status and output; `now` replaces a time that cannot be read.
DiagnosticsSending diagnosticsSending(const HelperRunner::HelperOutput& output, Date now);

/// Asks whether to install the update that is offered; the first button says so.
Alert installAlert();

/// Shows why an update could not be started.
Alert updateFailedAlert(const ControlSocketError& error);

/// Shows why the network filter could not be turned on.
Alert filterOnFailedAlert(std::string reason);

/// Shows why the device certificate could not be trusted.
Alert trustFailedAlert(std::string reason);

}  // namespace ostrel
