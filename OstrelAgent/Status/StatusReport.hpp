#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Text/Json.hpp"

namespace ostrel {

/// The device's protection status as printed by the endpoint helper. An optional is empty when its key is
/// missing or null; times stay texts.
struct StatusReport {
  struct Update {
    std::string state;
    std::optional<std::string> latestVersion;
    std::optional<std::string> minimumSupportedVersion;

    bool operator==(const Update&) const = default;
  };

  struct Health {
    struct Component {
      std::string state;
      std::optional<std::string> detail;
      std::optional<std::string> code;
      std::optional<std::string> severity;
      std::optional<bool> selfHealing;
      std::optional<std::string> expectedClearBy;
      std::optional<std::vector<std::string>> params;

      bool operator==(const Component&) const = default;
    };

    /// One trust setting of one package tool.
    struct Knob {
      std::string env;
      std::string ecosystem;
      std::optional<std::vector<std::string>> protects;
      bool covered = false;
      std::string reason;
      std::optional<std::string> evidence;
      std::optional<std::string> program;
      std::optional<std::string> lastSeen;
      std::optional<std::string> file;

      bool operator==(const Knob&) const = default;
    };

    struct RuntimeTrust : Component {
      std::optional<std::vector<Knob>> knobs;

      bool operator==(const RuntimeTrust&) const = default;
    };

    std::optional<Component> daemon;
    std::optional<Component> ca;
    std::optional<Component> sysext;
    std::optional<RuntimeTrust> runtimeTrust;
    std::optional<Component> credential;
    std::optional<Component> captureSet;
    std::optional<Component> caExpiry;
    std::optional<Component> egressLock;
    std::optional<std::string> verdict;
    std::optional<std::int64_t> offByPolicy;

    bool operator==(const Health&) const = default;
  };

  struct Feature {
    struct Ecosystem {
      std::string ecosystem;
      std::string capability;
      std::string state;

      bool operator==(const Ecosystem&) const = default;
    };

    std::string id;
    std::string state;
    std::optional<std::vector<Ecosystem>> ecosystems;

    bool operator==(const Feature&) const = default;
  };

  struct Interception {
    std::optional<std::int64_t> policyDirectFlows;

    bool operator==(const Interception&) const = default;
  };

  struct Checkin {
    std::optional<std::string> lastSuccess;
    std::optional<std::string> lastError;

    bool operator==(const Checkin&) const = default;
  };

  std::string version;
  bool caTrusted = false;
  bool tokenPresent = false;
  bool tokenManaged = false;
  std::optional<std::string> tokenMasked;
  std::optional<bool> enrolled;
  bool daemonListening = false;
  std::optional<bool> reactivatePending;
  std::optional<std::string> reactivateVersion;
  std::optional<bool> caTrustPending;
  std::optional<Update> update;
  std::optional<Health> health;
  std::optional<std::vector<Feature>> features;
  std::optional<Interception> interception;
  std::optional<Checkin> checkin;

  /// Decodes the helper's standard output. A single fault fails the whole document.
  [[nodiscard]] static std::expected<StatusReport, JsonError> decode(std::string_view bytes);

  bool operator==(const StatusReport&) const = default;
};

/// Read the keys of a report, or of a health block, which the daemon's responses also contain.
void read(const JsonReader& reader, StatusReport& report);
void read(const JsonReader& reader, StatusReport::Health& health);

}  // namespace ostrel
