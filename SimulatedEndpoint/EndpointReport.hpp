#pragma once

#include <string>

#include "SimulatedEndpoint/Json.hpp"
#include "SimulatedEndpoint/SystemFacts.hpp"

namespace ostrel::simulated {

// How a status report goes on when something happens to the endpoint. Each takes and gives a whole report; a
// verdict that was reported follows its components.

/// The system has changed; the version is that of the extension in the bundle.
Json reportAfterSystemChange(Json report, const SystemFacts& facts, const std::string& bundledVersion);

/// The daemon was installed.
Json reportAfterInstall(Json report);

/// The organization has accepted a token, of which only the masked form is known.
Json reportAfterEnrolment(Json report, const std::string& maskedToken, const std::string& now);

/// The device certificate has become trusted.
Json reportAfterTrust(Json report);

/// The service was reached.
Json reportAfterCheckin(Json report, const std::string& now);

/// The endpoint and the application are of another version now.
Json reportAfterUpdate(Json report, const std::string& version);

}  // namespace ostrel::simulated
