#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OstrelAgent/Containers/ContainerBlock.hpp"
#include "OstrelAgent/Containers/ContainerRuntime.hpp"

namespace ostrel {

/// What this Mac shows of each known container runtime and its trust in the device certificate.
struct ContainerTrustReading {
  struct Row {
    ContainerRuntime runtime;
    bool installed = false;
    bool running = false;
    bool blocked = false;
    bool needsRestart = false;

    bool operator==(const Row&) const = default;
  };

  /// What detection found; sets hold names of runtimes.
  struct Detected {
    std::set<std::string> running;
    std::set<std::string> installed;
    std::set<std::string> needsRestart;
    std::optional<bool> dockerSharesLibrary;
    std::optional<std::string> bundlePEM;  ///< the trust bundle's text when it can be used

    bool operator==(const Detected&) const = default;
  };

  /// The reading of a Mac on which nothing was found.
  ContainerTrustReading() : ContainerTrustReading(std::nullopt, {}) {}
  ContainerTrustReading(std::optional<ContainerBlock> block, Detected detected);

  /// Every known runtime once: blocked ones first, then running, then installed ones; else the table's order.
  std::vector<Row> rows;
  std::optional<ContainerBlock> block;
  std::optional<bool> dockerSharesLibrary;
  std::optional<std::string> bundlePEM;

  bool operator==(const ContainerTrustReading&) const = default;
};

}  // namespace ostrel
