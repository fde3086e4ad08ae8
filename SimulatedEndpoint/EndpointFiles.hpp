#pragma once

#include <array>

namespace ostrel::simulated::endpointfiles {

// Mac paths of the files that the endpoint itself keeps.

/// By it the system starts the daemon.
inline constexpr const char* launchFile = "/Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist";
inline constexpr const char* trustBundle =
    "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem";
/// The device certificate in PEM form.
inline constexpr const char* certificate = "/Library/Application Support/ostrel-agent-endpoint/device-ca.pem";
/// A certificate that can be published in its place.
inline constexpr const char* secondCertificate =
    "/Library/Application Support/simulated-endpoint/second-ca.pem";
inline constexpr const char* controlSocket =
    "/Library/Application Support/ostrel-agent-endpoint.control.sock";
/// Locked by the daemon that serves the socket.
inline constexpr const char* serviceLock = "/Library/Application Support/simulated-endpoint/service.lock";

/// What an uninstallation removes.
inline constexpr std::array all = {launchFile, trustBundle, certificate};

inline constexpr const char* launchFileText = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Label</key>
	<string>tech.brenn.ostrel-agent-endpoint</string>
	<key>RunAtLoad</key>
	<true/>
</dict>
</plist>
)";

}  // namespace ostrel::simulated::endpointfiles
