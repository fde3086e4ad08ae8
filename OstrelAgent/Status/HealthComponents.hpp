#pragma once

#include "OstrelAgent/Status/Snapshot.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

/// A component of the device: its member in a snapshot, its value in a report (null when absent), and the
/// label of its row.
struct HealthComponent {
  Snapshot::ComponentHealth Snapshot::*health;
  const StatusReport::Health::Component* (*reported)(const StatusReport::Health&);
  const Message& label;
};

template <auto member>
const StatusReport::Health::Component* reportedComponent(const StatusReport::Health& health) {
  const auto& component = health.*member;
  return component ? &*component : nullptr;
}

/// All components of a snapshot, in the order of its members. Of two with the same label the first is shown
/// when it needs attention, else the second.
inline constexpr HealthComponent healthComponents[] = {
    {&Snapshot::daemon, reportedComponent<&StatusReport::Health::daemon>, Copy::componentCapture},
    {&Snapshot::deviceCA, reportedComponent<&StatusReport::Health::ca>, Copy::componentDeviceCA},
    {&Snapshot::sysext, reportedComponent<&StatusReport::Health::sysext>, Copy::componentCapture},
    {&Snapshot::runtimeTrust, reportedComponent<&StatusReport::Health::runtimeTrust>,
     Copy::componentRuntimeTrust},
    {&Snapshot::credential, reportedComponent<&StatusReport::Health::credential>, Copy::componentCredential},
    {&Snapshot::captureSet, reportedComponent<&StatusReport::Health::captureSet>, Copy::componentCaptureSet},
    {&Snapshot::caExpiry, reportedComponent<&StatusReport::Health::caExpiry>, Copy::componentDeviceCA},
    {&Snapshot::egressLock, reportedComponent<&StatusReport::Health::egressLock>, Copy::featureEgressLock},
};

}  // namespace ostrel
