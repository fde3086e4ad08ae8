#pragma once

#include <string>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "Platform/Alerts.hpp"

namespace ostrel {

/// Asks whether to install the update that is offered; the first button says so.
Alert installAlert();

/// Tells why an update could not be started.
Alert updateFailedAlert(const ControlSocketError& error);

/// Tells why the network filter could not be turned on.
Alert filterOnFailedAlert(std::string reason);

/// Tells why the device certificate could not be trusted.
Alert trustFailedAlert(std::string reason);

}  // namespace ostrel
