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

/// What the panel says of a check-in, by the daemon's answer.
std::string checkinNotice(const std::expected<JsonObject, ControlSocketError>& answer);

/// What the panel says of diagnostics that were collected for the pasteboard.
std::string diagnosticsNotice(std::int32_t helperStatus);

/// What came of sending diagnostics: one of both is there.
struct DiagnosticsSending {
  std::optional<Date> sentAt;
  std::optional<std::string> error;

  bool operator==(const DiagnosticsSending&) const = default;
};

/// By the helper's exit status and what it printed; diagnostics that were sent at no readable time were sent
/// now.
DiagnosticsSending diagnosticsSending(const HelperRunner::HelperOutput& output, Date now);

/// Asks whether to install the update that is offered; the first button says so.
Alert installAlert();

/// Tells why an update could not be started.
Alert updateFailedAlert(const ControlSocketError& error);

/// Tells why the network filter could not be turned on.
Alert filterOnFailedAlert(std::string reason);

/// Tells why the device certificate could not be trusted.
Alert trustFailedAlert(std::string reason);

}  // namespace ostrel
