#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Status/Snapshot.hpp"

namespace ostrel {

/// The colour of a panel row and its short text.
struct RowState {
  enum class Case { ok, warn, bad, info, off };

  Case kind = Case::info;
  std::string text;

  static RowState ok(std::string_view text) { return {Case::ok, std::string(text)}; }
  static RowState warn(std::string_view text) { return {Case::warn, std::string(text)}; }
  static RowState bad(std::string_view text) { return {Case::bad, std::string(text)}; }
  static RowState info(std::string_view text) { return {Case::info, std::string(text)}; }
  static RowState off(std::string_view text) { return {Case::off, std::string(text)}; }

  bool isOk() const { return kind == Case::ok; }
  bool wantsAttention() const { return kind == Case::warn || kind == Case::bad; }

  bool operator==(const RowState&) const = default;
};

/// "ok", "warn", "bad", "info", "off".
std::string_view nameOf(RowState::Case kind);

/// One row of the panel: a component of the protection chain, or an ecosystem (without name and health).
struct StatusComponent {
  std::string id;
  RowState state;
  Snapshot::ComponentHealth health;
  std::optional<std::string> name;

  bool operator==(const StatusComponent&) const = default;
};

/// The row state of a fault by its severity; an unknown severity never looks healthy.
RowState weighed(std::string_view text, const Snapshot::ComponentHealth& health);

/// The row state of a component without a specific rule.
RowState healthState(const Snapshot::ComponentHealth& health, std::string_view ok, std::string_view broken);

/// Like `weighed`, but `info` for a state other than "broken" without severity.
RowState weighedUnlessUncertain(std::string_view text, const Snapshot::ComponentHealth& health);

}  // namespace ostrel
