#pragma once

#include "OstrelAgent/Status/Snapshot.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

/// One of the device's components: its place in a snapshot, what a report says of it (null when it says
/// nothing), and the label of the row that shows it.
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

/// Every component of a snapshot, in the order of its members. Of two that share a label the first is shown
/// when it wants attention, else the second.
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
